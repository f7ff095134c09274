"""One-dimensional columns of 4-, 6- and 8-node elements against the closed-form transfer
function, on a rigid base and on an elastic half-space."""
import os

import numpy as np

from . import reference, runs, sections
from .harness import Check, Figure, Outcome, Problem

KINDS = (4, 6, 8)
SOILS = [sections.Soil("soft clay", 150.0, 17.0, 0.03),
         sections.Soil("sand", 250.0, 18.5, 0.02),
         sections.Soil("dense gravel", 400.0, 20.0, 0.01)]
THICKNESS = (5.0, 10.0, 15.0)
ROCK = sections.HalfSpace(800.0, 22.0, 0.01)
TOLERANCE = {4: 0.05, 6: 0.005, 8: 0.005}


def strata(kind, cutoff, per_wavelength):
    """The strata cut so that a wavelength at the cut-off spans per_wavelength elements of
    4 nodes, or half as many quadratic ones."""
    if kind != 4:
        per_wavelength /= 2.0
    return [sections.Stratum(t, i, int(np.ceil(t * per_wavelength * cutoff / s.vs)))
            for i, (t, s) in enumerate(zip(THICKNESS, SOILS))]


def closed_form(base, frequencies):
    return reference.surface_transfer(
        THICKNESS, [s.shear_modulus for s in SOILS], [s.density for s in SOILS],
        [s.damping for s in SOILS],
        None if base is None else (base.shear_modulus, base.density, base.damping), frequencies)


def white_noise(count, time_step, seed=22):
    """A broad-band input of unit variance (gal), so that every line up to the cut-off carries
    the transfer function well above the printed precision of the results."""
    return sections.Wave(time_step, 100.0 * np.random.default_rng(seed).standard_normal(count),
                         "white noise")


def run(short, work):
    cutoff, count, step = (15.0, 1024, 0.02) if short else (25.0, 4096, 0.01)
    wave = white_noise(count, step)
    out = Outcome()
    curves = {}
    for base in (None, ROCK):
        for kind in KINDS:
            section = sections.Section(SOILS, strata(kind, cutoff, 16.0 if short else 20.0),
                                       kind=kind, base=base, one_dimensional=True)
            folder = os.path.join(work, f"{'rigid' if base is None else 'elastic'}-{kind}")
            sections.write_project(folder, section, sections.Analysis(cutoff=cutoff), wave)
            runs.analyse(folder)
            surface = runs.acceleration(folder, section.surface_nodes()[0])
            f, h = runs.transfer_function(surface, wave.acc_gal / 100.0, step)
            keep = (f > 0) & (f <= cutoff)
            f, h = f[keep], np.abs(h[keep])
            exact = np.abs(closed_form(base, f))
            difference = np.max(np.abs(h - exact)) / np.max(exact)
            curves[base is None, kind] = (f, h, exact)
            rows = sum(s.rows for s in section.strata)
            out.checks.append(Check(
                f"{'rigid base' if base is None else 'elastic half-space'}, {rows} rows of "
                f"{kind}-node elements: largest difference of |H| up to {cutoff:g} Hz, over the "
                "closed form's peak", difference, TOLERANCE[kind]))
    out.figures.append(Figure("column-transfer", "Surface over input motion of the layered "
                              "column: VARNEK's 4-, 6- and 8-node columns (markers) against "
                              "the closed form (line), on a rigid base (within motion) and on "
                              "an elastic half-space (outcrop motion); below, the difference.",
                              lambda fig: draw(fig, curves), (9.0, 6.0)))
    return out


def draw(fig, curves):
    axes = fig.subplots(2, 2, sharex=True, gridspec_kw={"height_ratios": (3, 1)})
    for col, rigid in enumerate((True, False)):
        top, bottom = axes[0, col], axes[1, col]
        f, _, exact = curves[rigid, KINDS[0]]
        top.plot(f, exact, "k-", lw=1.2, label="closed form")
        for kind, marker in zip(KINDS, "o^s"):
            f, h, exact = curves[rigid, kind]
            top.plot(f[::4], h[::4], marker, ms=3, mfc="none", label=f"{kind}-node")
            bottom.plot(f, (h - exact) / exact.max(), lw=0.8, label=f"{kind}-node")
        top.set_title("rigid base" if rigid else "elastic half-space (Vs 800 m/s)")
        top.set_ylabel("|surface / input|")
        bottom.set_ylabel("difference / peak")
        bottom.set_xlabel("frequency (Hz)")
        top.legend(fontsize=8)
        top.grid(alpha=0.3)
        bottom.grid(alpha=0.3)


PROBLEM = Problem(
    key="column-transfer",
    title="One-dimensional columns on a rigid and on an elastic base",
    reference="The closed-form transfer function of vertically travelling shear waves in "
              "damped horizontal layers (Kramer 1996, section 7.2): surface over base motion on "
              "a rigid base, surface over outcrop motion on an elastic half-space. Three strata "
              "(5 m of Vs 150 m/s, 10 m of 250 m/s, 15 m of 400 m/s, damping 3, 2 and 1 %) over "
              "rock of Vs 800 m/s with 1 % damping; columns one element wide with every node "
              "held vertically, elements of 4 nodes (20 a wavelength at the cut-off), 6 and 8 "
              "nodes (10 a wavelength); the input a white noise, so that the ratio of the "
              "surface and the input spectra is VARNEK's transfer function at every line.",
    source="Kramer, S. L. (1996), Geotechnical Earthquake Engineering, Prentice Hall, "
           "section 7.2.1; computed in `validation/reference.py`.",
    run=run)
