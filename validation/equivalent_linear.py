"""The equivalent-linear iteration of VARNEK against an independent one-dimensional
computation of the same column (validation/reference.py)."""
import os

import numpy as np

from varnek.report.results import read_model

from . import reference, runs, sections
from .harness import Check, Figure, Outcome, Problem

SOILS = [sections.Soil("soft clay", 120.0, 16.0, 0.02, 0.45,
                       sections.hyperbolic(1e-3, 0.02, 0.18)),
         sections.Soil("sand", 220.0, 18.5, 0.01, 0.35, sections.hyperbolic(4e-4, 0.01, 0.22)),
         sections.Soil("gravel", 380.0, 20.0, 0.02, 0.30)]
STRATA = [(8.0, 32), (12.0, 24), (10.0, 10)]  # thickness (m), rows of 4-node elements
PASSES = 12  # of the iteration, in both computations
ROCK = sections.HalfSpace(800.0, 22.0, 0.01)
CUTOFF = 20.0
TOLERANCE = {"modulus": 0.01, "strain": 0.03, "surface": 0.02, "errors": 0.05}


def run(short, work):
    wave = sections.example_record(0.5)
    section = sections.Section(SOILS, [sections.Stratum(t, i, r)
                                       for i, (t, r) in enumerate(STRATA)],
                               kind=4, base=ROCK, one_dimensional=True)
    rows = [s for s in reversed(section.row_soils())]  # from the surface down
    out = Outcome()
    results = {}
    for base in ((ROCK,) if short else (None, ROCK)):
        section.base = base
        label = "rigid base" if base is None else "elastic half-space"
        folder = os.path.join(work, "rigid" if base is None else "elastic")
        # A tolerance of 0: both computations make the same number of passes, so that they are
        # compared pass by pass and not at wherever each tolerance happens to stop them.
        analysis = sections.Analysis(cutoff=CUTOFF, equivalent_linear=True, tolerance=0.0,
                                     iteration_limit=PASSES)
        sections.write_project(folder, section, analysis, wave)
        console = runs.analyse(folder)
        ref = reference.column_response(section, wave, analysis)
        # VARNEK's elements from the base up; the column's layers from the surface down.
        final = read_model(os.path.join(folder, "output", "output0.inp"))
        ratio = final.stress[:, 7].reshape(-1, 4).mean(axis=1)[::-1]
        strain = runs.max_model(folder).strain[:, 4].reshape(-1, 4).mean(axis=1)[::-1]
        surface = runs.acceleration(folder, section.surface_nodes()[0])
        moving = [i for i, s in enumerate(rows) if SOILS[s].curve is not None]
        depth = ref["depth"]
        errors = runs.iterations(console)
        results[label] = (depth, ratio, ref["modulus_ratio"], strain, ref["peak_strain"],
                          errors, ref["errors"], surface, ref["surface"])
        out.checks += [
            Check(f"{label}: ERROR (the mean change of the moduli) of each of the {PASSES} "
                  "passes: largest difference over the one-dimensional computation's",
                  np.max(np.abs(np.array(errors) / ref["errors"] - 1.0)), TOLERANCE["errors"])
            if len(errors) == len(ref["errors"]) else
            Check(f"{label}: passes made, VARNEK {len(errors)}, one-dimensional "
                  f"{len(ref['errors'])}", 1.0, 0.0, percent=False),
            Check(f"{label}: final G/G0 of the strain-dependent elements: largest difference",
                  np.max(np.abs(ratio - ref["modulus_ratio"])[moving]), TOLERANCE["modulus"],
                  percent=False),
            Check(f"{label}: peak shear strain of the elements: largest difference over the "
                  "largest strain", np.max(np.abs(strain - ref["peak_strain"])) /
                  np.max(ref["peak_strain"]), TOLERANCE["strain"]),
            Check(f"{label}: surface acceleration: rms of the difference over the rms of the "
                  "one-dimensional computation's", runs.relative_rms(surface, ref["surface"]),
                  TOLERANCE["surface"])]
    out.figures.append(Figure(
        "equivalent-linear", "Equivalent-linear column under the El Centro record at 0.17 g: "
        "final G/G0 and peak shear strain over the depth, VARNEK (markers) against the independent "
        "one-dimensional computation (lines), and the change of the moduli at each iteration.",
        lambda fig: draw(fig, results), (10.0, 5.0)))
    return out


def draw(fig, results):
    modulus, strain, history = fig.subplots(1, 3, gridspec_kw={"width_ratios": (1, 1, 1.2)})
    for (label, r), colour in zip(results.items(), ("C0", "C3")):
        depth, ratio, ref_ratio, eps, ref_eps, errors, ref_errors, _, _ = r
        modulus.step(ref_ratio, depth, "-", color=colour, where="mid", lw=1.2,
                     label=f"{label}, 1-D")
        modulus.plot(ratio, depth, "o", color=colour, ms=3, mfc="none",
                     label=f"{label}, VARNEK")
        strain.plot(100.0 * ref_eps, depth, "-", color=colour, lw=1.2)
        strain.plot(100.0 * eps, depth, "o", color=colour, ms=3, mfc="none")
        history.semilogy(range(1, len(ref_errors) + 1), ref_errors, "-", color=colour, lw=1.2,
                         label=f"{label}, 1-D")
        history.semilogy(range(1, len(errors) + 1), errors, "o", color=colour, ms=4,
                         mfc="none", label=f"{label}, VARNEK")
    for ax, text in ((modulus, "final G/G0"), (strain, "peak shear strain (%)")):
        ax.set_xlabel(text)
        ax.invert_yaxis()
        ax.grid(alpha=0.3)
    modulus.set_ylabel("depth (m)")
    modulus.legend(fontsize=7)
    history.set_xlabel("iteration")
    history.set_ylabel("mean relative change of G (ERROR)")
    history.grid(alpha=0.3, which="both")
    history.legend(fontsize=7)


PROBLEM = Problem(
    key="equivalent-linear",
    title="Equivalent-linear iteration against an independent one-dimensional computation",
    reference="The equivalent-linear method of SHAKE (Schnabel, Lysmer and Seed 1972) computed "
              "independently of VARNEK's code by the closed-form wave solution of the layered "
              "column (`validation/reference.py`): each pass takes the peak strain at the "
              "middle of every sublayer, reads G/G0 and damping at 0.65 times it from the "
              "layer's curve (linear in log strain); both computations make 12 passes and are "
              "compared pass by pass. The column: 8 m of soft clay (Vs 120 m/s, hyperbolic "
              "curve with a reference strain of 0.1 %, damping 2 to 20 %), 12 m of sand (Vs "
              "220 m/s, 0.04 %, 1 to 23 %) and 10 m of linear gravel (Vs 380 m/s, 2 %), on a "
              "rigid base and on rock of Vs 800 m/s, under the El Centro 1940 N-S record of the "
              "example at half its amplitude (peak 0.17 g); VARNEK's column of 4-node "
              "elements, one a sublayer, cut-off 20 Hz.",
    source="Schnabel, P. B., Lysmer, J., and Seed, H. B. (1972), SHAKE: a computer program "
           "for earthquake response analysis of horizontally layered sites, EERC 72-12, "
           "University of California, Berkeley; hyperbolic curves of Hardin, B. O., and "
           "Drnevich, V. P. (1972), J. Soil Mech. Found. Div. 98(7).",
    run=run)
