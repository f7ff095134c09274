"""A published linear benchmark: example 2a of DEEPSOIL (a 20 m soil layer on elastic rock
under a Chi-Chi record), against VARNEK's column of the same site."""
import os

import numpy as np

from varnek import signals

from . import runs, sections
from .harness import Check, Figure, Outcome, Problem

DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "deepsoil-example-2a")
G = 980.665  # gal
SOIL = sections.Soil("soil", 500.0, 20.0, 0.0)
ROCK = sections.HalfSpace(760.0, 25.0, 0.02)
DEPTH, STRAIN_DEPTH = 20.0, 10.0
TOLERANCE = {"history": 0.01, "spectrum": 0.02, "strain": 0.01}


def load(name):
    return np.loadtxt(os.path.join(DATA, name), delimiter=",")


def run(short, work):
    motion, surface, spectrum = load("input.csv.gz"), load("surface.csv.gz"), load("spectrum.csv")
    step = motion[1, 0] - motion[0, 0]
    cutoff = 25.0 if short else 50.0
    # 4-node elements, an odd count so that one is centred at 10 m, where DEEPSOIL gives the
    # strain: 15 a wavelength at the cut-off.
    rows = int(np.ceil(DEPTH * 15.0 * cutoff / SOIL.vs)) | 1
    section = sections.Section([SOIL], [sections.Stratum(DEPTH, 0, rows)], kind=4, base=ROCK,
                               one_dimensional=True)
    folder = os.path.join(work, "column")
    sections.write_project(folder, section, sections.Analysis(cutoff=cutoff),
                           sections.Wave(step, motion[:, 1] * G, "Chi-Chi, DEEPSOIL example 2a"))
    runs.analyse(folder)
    varnek = runs.acceleration(folder, section.surface_nodes()[0]) / (G / 100.0)  # g
    reference = surface[:, 1]
    n = min(len(varnek), len(reference))
    history = runs.relative_rms(varnek[:n], reference[:n])

    periods = spectrum[:, 0]
    psa = signals.response_spectrum(varnek * G / 100.0, step, periods) / (G / 100.0)
    keep = periods >= (0.02 if not short else 0.05)  # above the cut-off's period
    spectrum_difference = np.max(np.abs(psa[keep] - spectrum[keep, 1]) / spectrum[keep, 1])

    strain_lines = runs.max_model(folder).strain
    centre = rows // 2
    varnek_strain = np.mean(strain_lines[4 * centre:4 * centre + 4, 4])  # engineering, points
    deepsoil_strain = np.max(np.abs(surface[:, 2])) / 100.0
    strain_difference = abs(varnek_strain - deepsoil_strain) / deepsoil_strain

    out = Outcome()
    out.checks += [
        Check("surface acceleration history: rms of the difference over the rms of DEEPSOIL's",
              history, TOLERANCE["history"]),
        Check(f"5 % response spectrum at the surface, periods {periods[keep][0]:.2g} to 10 s: "
              "largest difference over DEEPSOIL's", spectrum_difference, TOLERANCE["spectrum"]),
        Check(f"peak shear strain at 10 m: VARNEK {100 * varnek_strain:.4f} %, DEEPSOIL "
              f"{100 * deepsoil_strain:.4f} %; difference over DEEPSOIL's", strain_difference,
              TOLERANCE["strain"])]
    time = np.arange(n) * step
    out.figures.append(Figure(
        "deepsoil-2a", "DEEPSOIL example 2a (linear): surface acceleration and its 5 % response "
        "spectrum, DEEPSOIL (published results) and VARNEK's column of 4-node elements on "
        "dashpots, with the Chi-Chi record as outcrop motion of the rock.",
        lambda fig: draw(fig, time, reference[:n], varnek[:n], periods, spectrum[:, 1], psa),
        (9.0, 6.0)))
    return out


def draw(fig, time, reference, varnek, periods, reference_psa, psa):
    top, bottom = fig.subplots(2, 1, gridspec_kw={"height_ratios": (1, 1.2)})
    top.plot(time, reference, "k-", lw=0.8, label="DEEPSOIL")
    top.plot(time, varnek, "r--", lw=0.6, label="VARNEK")
    peak = int(np.argmax(np.abs(reference)))
    top.set_xlim(max(0.0, time[peak] - 4.0), time[peak] + 4.0)
    top.set_xlabel("time (s)")
    top.set_ylabel("surface acceleration (g)")
    top.legend(fontsize=8)
    top.grid(alpha=0.3)
    bottom.semilogx(periods, reference_psa, "k-", lw=1.2, label="DEEPSOIL")
    bottom.semilogx(periods, psa, "r--", lw=1.0, label="VARNEK")
    bottom.set_xlabel("period (s)")
    bottom.set_ylabel("pseudo-acceleration, 5 % (g)")
    bottom.legend(fontsize=8)
    bottom.grid(alpha=0.3, which="both")


PROBLEM = Problem(
    key="deepsoil-2a",
    title="Published linear benchmark: DEEPSOIL example 2a",
    reference="Example 2a of the DEEPSOIL user manual, a linear frequency-domain analysis: one "
              "soil layer 20 m thick (unit weight 20 kN/m3, Vs 500 m/s, no damping) on elastic "
              "rock (25 kN/m3, Vs 760 m/s, 2 % damping), under a Chi-Chi record of 59 s as "
              "outcrop motion of the rock. DEEPSOIL's surface acceleration, its 5 % response "
              "spectrum and the shear strain at 10 m against VARNEK's column of 4-node elements "
              "(15 a wavelength at the cut-off of 50 Hz) on dashpots of the rock.",
    source="DEEPSOIL 6.1 results (Hashash et al., DEEPSOIL 6.1 User Manual, University of "
           "Illinois at Urbana-Champaign) as kept in the test data of pyStrata "
           "(github.com/arkottke/pystrata, `tests/data/ds-example-2a-le.xlsx`, sheet Layer1, "
           "and the record `tests/data/ChiChi.txt`, MIT licence; the profile from "
           "`tests/propagation_test.py`). Extracted to `validation/data/deepsoil-example-2a/` "
           "by `validation/data/extract.py`; see `validation/data/README.md`.",
    run=run)
