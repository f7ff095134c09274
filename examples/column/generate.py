#!/usr/bin/env python3
"""Writes the files of the example project "column": a soil section 30 m wide and 20 m deep on a
rigid base, three layers of 4-node elements, shaken by the El Centro 1940 N-S record.

Run it from anywhere; it writes next to itself. Given the path of the record as it is published
(8F10.5 columns, units g, "#" header lines), it also converts the record into wave.csv; without
one it leaves wave.csv as it is.
"""
import math
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
WIDTH, COLUMNS = 30.0, 15    # 2 m wide elements
DEPTH, ROWS = 20.0, 20       # 1 m high elements
# Layers from the surface down: (name, bottom depth m, material index, density t/m3, Poisson).
LAYERS = [
    ("loose sand", 4.0, 0, 1.8, 0.40),
    ("soft clay", 12.0, 1, 1.7, 0.45),
    ("dense gravel", 20.0, 2, 2.0, 0.35),
]
GAUSS = 1.0 / math.sqrt(3.0)


def write(name, lines):
    with open(os.path.join(HERE, name), "w", newline="\n") as f:
        f.write("\n".join(lines) + "\n")


def layer_at(depth):
    for layer in LAYERS:
        if depth <= layer[1] + 1e-9:
            return layer
    return LAYERS[-1]


def node_index(column, row):
    """Row 0 is the base, row ROWS the surface."""
    return row * (COLUMNS + 1) + column


def nodes():
    lines = ["// x [m]  y [m]: one node a line, numbered from 0 in this order; y = 0 at the surface"]
    for row in range(ROWS + 1):
        for column in range(COLUMNS + 1):
            x = WIDTH * column / COLUMNS
            y = -DEPTH + DEPTH * row / ROWS
            lines.append(f"{x:.3f} {y:.3f}")
    return lines


def elements():
    lines = ["// material  nodes  density-selector  node1 .. node4 (counter-clockwise from bottom left)"]
    for row in range(ROWS):
        top = DEPTH - DEPTH * (row + 1) / ROWS
        bottom = top + DEPTH / ROWS
        material = layer_at(0.5 * (top + bottom))[2]
        for column in range(COLUMNS):
            n = [node_index(column, row), node_index(column + 1, row),
                 node_index(column + 1, row + 1), node_index(column, row + 1)]
            lines.append(f"{material} 4 1 {n[0]} {n[1]} {n[2]} {n[3]}")
    return lines


def materials():
    strains = [1e-6, 3e-6, 1e-5, 3e-5, 1e-4, 3e-4, 1e-3, 3e-3, 1e-2]
    clay_g = [1.0, 0.99, 0.96, 0.90, 0.78, 0.60, 0.40, 0.22, 0.11]
    clay_h = [2.0, 2.2, 2.8, 4.0, 6.5, 10.0, 14.0, 18.0, 21.0]
    lines = ["3   number of materials"]
    # 0: loose sand, generalised hyperbolic model (plain hyperbola), strength from the stresses.
    lines += ["4   code: GHE model", "0.0018   density 1 [MPa s2/m2]", "0.0018   density 2",
              "0   (unused)", "40.5   G0 [MPa] (Vs 150 m/s)", "0.40   Poisson's ratio",
              "0.02   damping ratio", "35   friction angle [deg]", "0.01   cohesion [MPa]",
              "1   beta1", "1   beta2", "1   C1 at zero strain", "1   C1 at infinite strain",
              "1   C2 at zero strain", "1   C2 at infinite strain", "1   damping exponent",
              "0.22   maximum damping ratio", "1   strength divisor"]
    # 1: soft clay, table of G/G0 and damping against shear strain.
    lines += ["2   code: table model", "0.0017   density 1", "0.0017   density 2", "0   (unused)",
              "68.0   G0 [MPa] (Vs 200 m/s)", "0.45   Poisson's ratio", "0.02   damping ratio",
              f"{len(strains)}   table length"]
    lines += [f"{s:g}   strain" for s in strains]
    lines += [f"{g:g}   G/G0" for g in clay_g]
    lines += [f"{h:g}   damping [%]" for h in clay_h]
    # 2: dense gravel, linear elastic.
    lines += ["5   code: elastic", "0.0020   density 1", "0.0020   density 2", "0   (unused)",
              "180.0   G0 [MPa] (Vs 300 m/s)", "0.35   Poisson's ratio", "0.02   damping ratio"]
    return lines


def boundary():
    lines = ["// node  code  x  y: 2 fixes x and y (rigid base), 1 fixes y (roller sides)"]
    for column in range(COLUMNS + 1):
        lines.append(f"{node_index(column, 0)} 2 0.0 0.0")
    for row in range(1, ROWS + 1):
        for column in (0, COLUMNS):
            lines.append(f"{node_index(column, row)} 1 0.0 0.0")
    return lines


def vertical_stress(depth):
    """Geostatic vertical stress in tf/m2 at a depth, compression negative."""
    stress, top = 0.0, 0.0
    for _, bottom, _, density, _ in LAYERS:
        stress -= density * (min(depth, bottom) - top)
        if depth <= bottom:
            break
        top = bottom
    return stress


def self_weight():
    lines = ["---- stress ----"]
    number = 0
    for row in range(ROWS):
        top = DEPTH - DEPTH * (row + 1) / ROWS
        middle = top + 0.5 * DEPTH / ROWS
        half = 0.5 * DEPTH / ROWS
        # Integration points in the order of the 2 x 2 rule: two at the lower edge, two at the upper.
        depths = [middle + half * GAUSS] * 2 + [middle - half * GAUSS] * 2
        for column in range(COLUMNS):
            number += 1
            for depth in depths:
                nu = layer_at(depth)[4]
                k0 = nu / (1.0 - nu)
                sy = vertical_stress(depth)
                sx = sz = k0 * sy
                mean = -(sx + sy + sz) / 3.0
                dev = math.sqrt(0.5 * ((sx + mean) ** 2 + (sy + mean) ** 2 + (sz + mean) ** 2))
                lines.append(f"{number} {sx:.4f} {sy:.4f} {sz:.4f} 0.0000 {mean:.4f} {dev:.4f}")
    return lines


def wave(source):
    values = []
    with open(source) as f:
        for line in f:
            if not line.startswith("#"):
                values += [float(v) for v in line.split()]
    lines = ["elcentro1940ns,0.02,1.0"]
    lines += [f"{0.02 * k:.2f},{v * 9.80665 * 100:.4f}" for k, v in enumerate(values)]
    return lines


def main():
    write("constants.dat", ["15.0   cut-off frequency [Hz]", "0.0   (unused)",
                            "0.02   time step [s]", "0.02   convergence tolerance",
                            "0.65   effective strain ratio", "8   iteration limit",
                            "2   side boundaries: none"])
    if len(sys.argv) > 1:
        write("wave.csv", wave(sys.argv[1]))
    write("nodes.dat", nodes())
    write("elements.dat", elements())
    write("materials.dat", materials())
    write("boundary.dat", boundary())
    write("output0.inp", self_weight())
    write("input_VARNEK.inp", ["constants.dat", "wave.csv", "nodes.dat", "elements.dat",
                               "materials.dat", "boundary.dat"])
    write("Flag_VARNEK.inp", ["20240601 500 1 0"])


if __name__ == "__main__":
    main()
