"""The self-weight stresses of a laterally confined layered column against the closed form."""
import os

import numpy as np

from varnek.report.results import read_model

from . import runs, sections
from .harness import Check, Figure, Outcome, Problem

SOILS = [sections.Soil("clay", 150.0, 17.0, 0.03, poisson=0.45),
         sections.Soil("sand", 250.0, 19.0, 0.02, poisson=0.30),
         sections.Soil("gravel", 400.0, 21.0, 0.01, poisson=0.25)]
THICKNESS = (4.0, 8.0, 8.0)
METHODS = ("gravity", "k0")
KINDS = (4, 6, 8)
# The closed form holds exactly for the mean stress of an element; the file prints 4 decimals
# of tf/m2, some 3e-6 of the overburden at the base.
TOLERANCE = 1e-5


def overburden(depth):
    """Vertical stress (MPa) at a depth: the unit weights integrated from the surface."""
    stress, top = np.zeros_like(depth), 0.0
    for t, soil in zip(THICKNESS, SOILS):
        stress += soil.unit_weight / 1000.0 * np.clip(depth - top, 0.0, t)
        top += t
    return stress


def element_stresses(path, count):
    """Mean over the integration points of each element of stress x, y, z (MPa, compression
    negative), from the step-0 result model that the self-weight program writes."""
    lines = read_model(path).stress
    element = lines[:, 0].astype(int) - 1
    sums = np.zeros((count, 3))
    np.add.at(sums, element, lines[:, 1:4])
    return sums / np.bincount(element, minlength=count)[:, None] / sections.TF_PER_MPA


def run(short, work):
    rows = 1 if short else 2
    out = Outcome()
    profiles = {}
    for kind in KINDS:
        section = sections.Section(
            SOILS, [sections.Stratum(t, i, rows * int(t / 2)) for i, t in enumerate(THICKNESS)],
            kind=kind, side_rollers=True)
        depth = section.depth - section.element_centres()[:, 1]
        materials = [section.cell_soil(0, r) for r in range(len(section.row_heights()))]
        k0 = np.array([SOILS[m].poisson / (1.0 - SOILS[m].poisson) for m in materials])
        if kind == 6:
            k0 = np.repeat(k0, 2)  # two triangles a cell
        vertical = -overburden(depth)
        for method in METHODS:
            folder = os.path.join(work, f"{method}-{kind}")
            sections.write_project(folder, section, sections.Analysis(),
                                   sections.Wave(0.01, np.zeros(4)))
            runs.run(folder, runs.SELFWEIGHT, "--method", method)
            s = element_stresses(os.path.join(folder, "output0.inp"), len(depth))
            scale = overburden(np.array(section.depth))
            vertical_error = np.max(np.abs(s[:, 1] - vertical)) / scale
            horizontal_error = np.max(np.abs(s[:, [0, 2]] - (k0 * vertical)[:, None])) / scale
            profiles[method, kind] = (depth, s)
            out.checks.append(Check(
                f"{method}, {kind}-node elements: largest difference of the vertical and the "
                "horizontal stresses from gamma z and K0 gamma z, over gamma z at the base",
                max(vertical_error, horizontal_error), TOLERANCE))
    out.figures.append(Figure(
        "self-weight", "Vertical and horizontal self-weight stresses of the confined column "
        "(element means, markers) against gamma z and K0 gamma z (lines), by both methods of "
        "varnek-selfweight.", lambda fig: draw(fig, profiles), (9.0, 5.0)))
    return out


def draw(fig, profiles):
    axes = fig.subplots(1, 2, sharey=True)
    z = np.linspace(0.0, sum(THICKNESS), 201)
    vertical = overburden(z) * 1000.0
    for ax, method in zip(axes, METHODS):
        ax.plot(vertical, z, "k-", lw=1.2, label="gamma z")
        top = 0.0
        for t, soil in zip(THICKNESS, SOILS):
            band = (z >= top) & (z <= top + t)
            k0 = soil.poisson / (1.0 - soil.poisson)
            ax.plot(k0 * vertical[band], z[band], "k--", lw=1.0,
                    label="K0 gamma z" if top == 0.0 else None)
            top += t
        for kind, marker in zip(KINDS, "o^s"):
            depth, s = profiles[method, kind]
            ax.plot(-s[:, 1] * 1000.0, depth, marker, ms=4, mfc="none",
                    label=f"{kind}-node, vertical")
            ax.plot(-s[:, 0] * 1000.0, depth, marker, ms=4, label=f"{kind}-node, horizontal")
        ax.set_title(f"--method {method}")
        ax.set_xlabel("stress, compression (kPa)")
        ax.grid(alpha=0.3)
    axes[0].set_ylabel("depth (m)")
    axes[0].invert_yaxis()
    axes[1].legend(fontsize=7)


PROBLEM = Problem(
    key="self-weight",
    title="Self-weight stresses of a confined column",
    reference="Under its own weight a layered column whose sides cannot move laterally carries "
              "the overburden as vertical stress, sigma_v = sum of gamma h over the layers "
              "above, and K0 = nu / (1 - nu) times it as horizontal stress, with no shear. "
              "Three layers (4 m of clay, 17 kN/m3, nu 0.45; 8 m of sand, 19 kN/m3, nu 0.30; "
              "8 m of gravel, 21 kN/m3, nu 0.25) in a column one element wide on a fixed base "
              "with its sides on rollers, by both methods of `varnek-selfweight` (gravity: a "
              "plane-strain static analysis; k0: the geostatic stresses). The mean over an "
              "element's integration points equals the closed form at the element's centre "
              "for a stress that is linear over the element.",
    source="Closed form (elasticity of a laterally confined column: no lateral strain gives "
           "sigma_h = nu / (1 - nu) sigma_v).",
    run=run)
