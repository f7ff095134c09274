"""Projects of rectangular layered soil sections on a regular grid, written for the programs.

A section is a number of equal columns across and horizontal strata from the surface down, each
cut into equal rows of elements: 4-node or 8-node quadrilaterals, or 6-node triangles (each cell
cut along its rising diagonal). A soft valley may take the place of the upper cells over a
middle band. The base is rigid or an elastic half-space (dashpots of rho Vs in x and rho Vp in
y, with the half-space's damping); the sides get the project's side treatment (for treatment 1
dashpots of rho Vp in x and rho Vs in y). A one-dimensional column holds every node in y, so that it
shears as a layer.

Units as the programs take them: m, s, moduli in MPa and densities in MPa s2/m2 (t/m3 over
1000), so that dashpots are in MPa s/m; the wave in gal. The programs write the self-weight and
the result-model stresses in tf/m2 and the element stresses of dyn/ in kPa.
"""
import math
import os
from dataclasses import dataclass

import numpy as np

GRAVITY = 9.80665  # m/s2, as the self-weight program takes it
TF_PER_MPA = 1000.0 / GRAVITY  # the result files' tf/m2 per MPa

# One line of the consistent matrix of an edge, times 30 (the program divides by 30): row node
# at the start, the middle or the end of a 2- or 3-node edge.
EDGE_WEIGHTS = {2: ((10.0, 5.0), (5.0, 10.0)),
                3: ((4.0, 2.0, -1.0), (2.0, 16.0, 2.0), (-1.0, 2.0, 4.0))}


@dataclass(frozen=True)
class Curve:
    strain: np.ndarray  # shear strain, a fraction, increasing
    modulus_ratio: np.ndarray  # G/G0
    damping: np.ndarray  # fraction


def table_curve(strain, modulus_ratio, damping, per_decade=40, lowest=1e-7, highest=1.0):
    """A curve given at a few strains, as the table model should read it: interpolated linearly
    in the logarithm of the strain, flat beyond its ends, on per_decade points a decade from
    lowest to highest. The program's lookup is linear in the strain itself and takes a point
    from the next segment, so it follows the curve between such close points."""
    grid = np.logspace(np.log10(lowest), np.log10(highest),
                       int(round(per_decade * np.log10(highest / lowest))) + 1)
    log_strain = np.log(np.asarray(strain, dtype=float))
    return Curve(grid, np.interp(np.log(grid), log_strain, modulus_ratio),
                 np.interp(np.log(grid), log_strain, damping))


def hyperbolic(reference_strain, low, high, per_decade=40):
    """Hardin and Drnevich (1972): G/G0 = 1 / (1 + strain / reference strain), damping
    low + high (1 - G/G0), on per_decade points a decade from 1e-7 to 1."""
    strain = np.logspace(-7, 0, 7 * per_decade + 1)
    ratio = 1.0 / (1.0 + strain / reference_strain)
    return Curve(strain, ratio, low + high * (1.0 - ratio))


class ElasticProperties:
    """What a soil and the half-space derive from their vs, unit_weight and poisson."""

    @property
    def density(self):
        return self.unit_weight / GRAVITY / 1000.0

    @property
    def shear_modulus(self):
        return self.density * self.vs ** 2

    @property
    def vp(self):
        nu = self.poisson
        return self.vs * math.sqrt(2.0 * (1.0 - nu) / (1.0 - 2.0 * nu))


@dataclass(frozen=True)
class Soil(ElasticProperties):
    name: str
    vs: float  # m/s, small-strain
    unit_weight: float  # kN/m3
    damping: float = 0.0  # fraction; for a curve, its value is taken from the curve
    poisson: float = 0.35
    curve: object = None  # strain, modulus_ratio, damping (fractions): the table model


@dataclass(frozen=True)
class Stratum:
    thickness: float  # m
    soil: int  # index into Section.soils
    rows: int = 1  # rows of elements it is cut into


@dataclass(frozen=True)
class HalfSpace(ElasticProperties):
    vs: float
    unit_weight: float
    damping: float = 0.0
    poisson: float = 0.3

    def impedance(self, speed):
        """rho V* of the damped half-space for a wave speed, V* = V sqrt(1 + 2 i h), in the
        program's convention that a term i w c is a dashpot."""
        return self.density * speed * np.sqrt(1.0 + 2.0j * self.damping)


@dataclass
class Section:
    soils: list
    strata: list  # from the surface down
    kind: int = 4  # nodes per element: 4, 6 or 8
    columns: int = 1
    width: float = 1.0  # of a column, m
    base: HalfSpace = None  # None: rigid
    one_dimensional: bool = False  # every node held in y
    side_treatment: int = 2
    valley: tuple = None  # (first column, columns, rows from the surface, soil index)
    side_rollers: bool = False  # the side nodes held in x (a laterally confined section)

    # ---- geometry ----
    @property
    def depth(self):
        return sum(s.thickness for s in self.strata)

    def row_heights(self):
        """Heights of the rows of elements from the base up."""
        heights = []
        for s in reversed(self.strata):
            heights += [s.thickness / s.rows] * s.rows
        return heights

    def row_soils(self):
        soils = []
        for s in reversed(self.strata):
            soils += [s.soil] * s.rows
        return soils

    @property
    def quadratic(self):
        return self.kind in (6, 8)

    def grid(self):
        """x and y of the grid lines that carry nodes: corner lines, and mid lines for
        quadratic elements."""
        step = 2 if self.quadratic else 1
        xs = np.arange(self.columns * step + 1) * self.width / step
        ys = [0.0]
        for h in self.row_heights():
            if self.quadratic:
                ys.append(ys[-1] + h / 2.0)
                ys.append(ys[-1] + h / 2.0)
            else:
                ys.append(ys[-1] + h)
        return xs, np.array(ys)

    def has_node(self, i, j):
        # The centre of a cell carries a node only for triangles (the middle of the diagonal).
        return not (self.kind == 8 and i % 2 == 1 and j % 2 == 1)

    def nodes(self):
        """Node coordinates, row by row from the base, and a map grid place -> node index."""
        xs, ys = self.grid()
        index, xy = {}, []
        for j, y in enumerate(ys):
            for i, x in enumerate(xs):
                if self.has_node(i, j):
                    index[i, j] = len(xy)
                    xy.append((x, y))
        return np.array(xy), index

    def cell_soil(self, c, r):
        """Soil of cell (column c, row r from the base)."""
        rows = len(self.row_heights())
        if self.valley:
            first, count, depth_rows, soil = self.valley
            if first <= c < first + count and r >= rows - depth_rows:
                return soil
        return self.row_soils()[r]

    def elements(self, index):
        """(soil index, node indices) of every element, row by row from the base."""
        s = 2 if self.quadratic else 1
        out = []
        for r in range(len(self.row_heights())):
            for c in range(self.columns):
                i, j = s * c, s * r

                def n(di, dj):
                    return index[i + di, j + dj]
                soil = self.cell_soil(c, r)
                if self.kind == 4:
                    out.append((soil, [n(0, 0), n(1, 0), n(1, 1), n(0, 1)]))
                elif self.kind == 8:
                    out.append((soil, [n(0, 0), n(2, 0), n(2, 2), n(0, 2),
                                       n(1, 0), n(2, 1), n(1, 2), n(0, 1)]))
                else:  # corners 1, 2, 3, then the middles of sides 2-3, 3-1, 1-2
                    out.append((soil, [n(0, 0), n(2, 0), n(2, 2), n(2, 1), n(1, 1), n(1, 0)]))
                    out.append((soil, [n(0, 0), n(2, 2), n(0, 2), n(1, 2), n(0, 1), n(1, 1)]))
        return out

    def element_centres(self):
        """Centroid of the corners of every element, in element order."""
        xy, index = self.nodes()
        corners = 3 if self.kind == 6 else 4
        return np.array([xy[nodes[:corners]].mean(axis=0) for _, nodes in self.elements(index)])

    def surface_nodes(self):
        xs, ys = self.grid()
        _, index = self.nodes()
        return [index[i, len(ys) - 1] for i in range(len(xs))]

    def vertical_nodes(self, i):
        """Nodes of grid line i from the base up."""
        _, ys = self.grid()
        _, index = self.nodes()
        return [index[i, j] for j in range(len(ys)) if (i, j) in index]


@dataclass
class Analysis:
    cutoff: float = 20.0  # Hz
    equivalent_linear: bool = False
    tolerance: float = 0.01
    strain_ratio: float = 0.65
    iteration_limit: int = 1
    single_step_output: bool = True


@dataclass
class Wave:
    time_step: float
    acc_gal: np.ndarray
    name: str = "wave"


EXAMPLE_RECORD = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))),
                              "examples", "column", "wave.csv")


def example_record(scale=1.0, samples=None):
    """The El Centro 1940 N-S record of the bundled example (gal, 0.02 s), scaled, and cut to
    its first samples when asked."""
    data = np.loadtxt(EXAMPLE_RECORD, delimiter=",", skiprows=1)[:samples]
    return Wave(data[1, 0] - data[0, 0], scale * data[:, 1], "El Centro 1940 N-S")


def material_record(soil):
    """The material file lines of one soil: elastic (code 5) or the table model."""
    rho, g0 = soil.density, soil.shear_modulus
    head = [rho, rho, 0.0, g0, soil.poisson]
    if soil.curve is None:
        return ["5"] + [repr(float(v)) for v in head + [soil.damping]]
    c = soil.curve
    lines = ["2"] + [repr(float(v)) for v in head + [c.damping[0]]] + [str(len(c.strain))]
    lines += [repr(float(v)) for v in c.strain]
    lines += [repr(float(v)) for v in c.modulus_ratio]
    lines += [repr(float(100.0 * v)) for v in c.damping]  # in percent
    return lines


def edge_lines(code, direction, coefficient, edges):
    """$VISCO lines of a dashpot along edges: each edge (length, nodes along it) adds one line
    per node with the terms of the consistent edge matrix."""
    lines = []
    for length, nodes in edges:
        c = coefficient * length
        for row, weights in zip(nodes, EDGE_WEIGHTS[len(nodes)]):
            ends = list(nodes) + [-1] * (3 - len(nodes))
            w = list(weights) + [0.0] * (3 - len(weights))
            lines.append(f"$VISCO {code} {row} {direction} {float(c.real)!r} {float(c.imag)!r} 0 "
                         f"{w[0]:g} {w[1]:g} {w[2]:g} {ends[0]} {ends[1]} {ends[2]}")
    return lines


def boundary_lines(section, index):
    xs, ys = section.grid()
    last_i, last_j = len(xs) - 1, len(ys) - 1
    step = 2 if section.quadratic else 1
    lines = []
    base = [index[i, 0] for i in range(len(xs))]
    if section.base is None:
        lines += [f"{n} 2 0 0" for n in base]
    else:
        edges = [(section.width, [index[i + k, 0] for k in range(step + 1)])
                 for i in range(0, last_i, step)]
        hs = section.base
        lines += edge_lines(101, 0, hs.impedance(hs.vs), edges)
        lines += edge_lines(102, 1, hs.impedance(hs.vp), edges)
    if section.one_dimensional:
        lines += [f"{index[i, j]} 1 0 0" for (i, j) in sorted(index, key=index.get)
                  if j > 0 or section.base is not None]
    if section.side_rollers:
        lines += [f"{index[i, j]} 0 0 0" for j in range(1, last_j + 1) for i in (0, last_i)]
    if section.side_treatment == 1:
        heights = section.row_heights()
        for i, code in ((0, 201), (last_i, 200)):
            for r, h in enumerate(heights):
                soil = section.soils[section.cell_soil(0 if i == 0 else section.columns - 1, r)]
                nodes = [index[i, step * r + k] for k in range(step + 1)]
                lines += edge_lines(code, 0, soil.density * soil.vp + 0j, [(h, nodes)])
                lines += edge_lines(202, 1, soil.density * soil.vs + 0j, [(h, nodes)])
    return lines


def project_files(section, analysis, wave):
    """File name -> text of the whole project."""
    xy, index = section.nodes()
    elements = section.elements(index)
    flags = (f"20200101 500 {int(analysis.equivalent_linear)} "
             f"{int(analysis.single_step_output)}\n")
    constants = [analysis.cutoff, 0, wave.time_step, analysis.tolerance, analysis.strain_ratio,
                 analysis.iteration_limit, section.side_treatment]
    materials = [str(len(section.soils))]
    for soil in section.soils:
        materials += material_record(soil)
    samples = "".join(f"{k * wave.time_step:.10g},{float(a)!r}\n"
                      for k, a in enumerate(wave.acc_gal))
    return {
        "Flag_VARNEK.inp": flags,
        "input_VARNEK.inp": "constants.dat\nwave.csv\nnodes.dat\nelements.dat\nmaterials.dat\n"
                            "boundary.dat\n",
        "constants.dat": "".join(f"{float(v)!r}\n" if isinstance(v, float) else f"{v}\n"
                                 for v in constants),
        # The header is split at commas: the name must hold none.
        "wave.csv": f"{wave.name.replace(',', ';')},{float(wave.time_step)!r},1\n" + samples,
        "nodes.dat": "".join(f"{float(x)!r} {float(y)!r}\n" for x, y in xy),
        "elements.dat": "".join(f"{soil} {len(nodes)} 1 {' '.join(map(str, nodes))}\n"
                                for soil, nodes in elements),
        "materials.dat": "\n".join(materials) + "\n",
        "boundary.dat": "\n".join(boundary_lines(section, index)) + "\n",
    }


def write_project(folder, section, analysis, wave):
    """Writes the project into folder, with config_VARNEK.txt naming folder itself; returns
    folder."""
    os.makedirs(folder, exist_ok=True)
    files = project_files(section, analysis, wave)
    files["config_VARNEK.txt"] = os.path.abspath(folder) + "/\n"
    for name, text in files.items():
        with open(os.path.join(folder, name), "w", newline="") as f:
            f.write(text)
    return folder
