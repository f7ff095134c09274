"""Published linear benchmarks: example 2a of DEEPSOIL (a 20 m soil layer on elastic rock
under a Chi-Chi record) and NRATTLE's amplification of a crustal profile of 400 layers, against
VARNEK's columns of the same sites."""
import os

import numpy as np

from varnek import signals

from . import reference, runs, sections
from .harness import Check, Figure, Outcome, Problem

DATA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data")
G = 980.665  # gal
SOIL = sections.Soil("soil", 500.0, 20.0, 0.0)
ROCK = sections.HalfSpace(760.0, 25.0, 0.02)
DEPTH, STRAIN_DEPTH = 20.0, 10.0
TOLERANCE = {"history": 0.01, "spectrum": 0.02, "strain": 0.01, "amplification": 0.005,
             "closed form": 1e-4}
HALF_SPACE = (3500.0, 2.72)  # NRATTLE's: Vs (m/s), density (t/m3)


def load(name):
    return np.loadtxt(os.path.join(DATA, name), delimiter=",")


def run(short, work):
    out = Outcome()
    deepsoil(short, work, out)
    nrattle(short, work, out)
    return out


def deepsoil(short, work, out):
    motion, surface = load("deepsoil-example-2a/input.csv.gz"), \
        load("deepsoil-example-2a/surface.csv.gz")
    spectrum = load("deepsoil-example-2a/spectrum.csv")
    step = motion[1, 0] - motion[0, 0]
    cutoff = 25.0 if short else 50.0
    # 4-node elements, an odd count so that one is centred at 10 m, where DEEPSOIL gives the
    # strain: 15 a wavelength at the cut-off.
    rows = int(np.ceil(DEPTH * 15.0 * cutoff / SOIL.vs)) | 1
    section = sections.Section([SOIL], [sections.Stratum(DEPTH, 0, rows)], kind=4, base=ROCK,
                               one_dimensional=True)
    folder = os.path.join(work, "deepsoil")
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

    out.checks += [
        Check("DEEPSOIL 2a: surface acceleration history: rms of the difference over the rms "
              "of DEEPSOIL's", history, TOLERANCE["history"]),
        Check(f"DEEPSOIL 2a: 5 % response spectrum at the surface, periods "
              f"{periods[keep][0]:.2g} to 10 s: largest difference over DEEPSOIL's",
              spectrum_difference, TOLERANCE["spectrum"]),
        Check(f"DEEPSOIL 2a: peak shear strain at 10 m: VARNEK {100 * varnek_strain:.4f} %, "
              f"DEEPSOIL {100 * deepsoil_strain:.4f} %; difference over DEEPSOIL's",
              strain_difference, TOLERANCE["strain"])]
    time = np.arange(n) * step
    out.figures.append(Figure(
        "deepsoil-2a", "DEEPSOIL example 2a (linear): surface acceleration and its 5 % response "
        "spectrum, DEEPSOIL (published results) and VARNEK's column of 4-node elements on "
        "dashpots, with the Chi-Chi record as outcrop motion of the rock.",
        lambda fig: draw(fig, time, reference[:n], varnek[:n], periods, spectrum[:, 1], psa),
        (9.0, 6.0)))


def nrattle(short, work, out):
    """The surface over the half-space's outcrop motion at NRATTLE's frequencies: a white noise
    of a length whose lines fall on them, through a column of 8-node elements, 8 a
    wavelength at the cut-off in every layer."""
    profile = load("nrattle/profile.csv")
    amplification = load("nrattle/amplification.csv")[1:]  # above 0 Hz
    cutoff = 2.0 if short else 10.0
    soils = [sections.Soil(f"layer {i + 1}", vs, rho * sections.GRAVITY, 0.0, 0.3)
             for i, (_, vs, rho) in enumerate(profile)]
    strata = [sections.Stratum(t, i, max(1, int(np.ceil(t * 8.0 * cutoff / vs))))
              for i, (t, vs, _) in enumerate(profile)]
    section = sections.Section(soils, strata, kind=8, one_dimensional=True,
                               base=sections.HalfSpace(HALF_SPACE[0],
                                                       HALF_SPACE[1] * sections.GRAVITY, 0.0))
    count = 256
    step = 1.0 / (amplification[0, 0] * count)
    noise = 100.0 * np.random.default_rng(22).standard_normal(count)
    folder = os.path.join(work, "nrattle")
    sections.write_project(folder, section, sections.Analysis(cutoff=cutoff),
                           sections.Wave(step, noise, "white noise"))
    runs.analyse(folder)
    f, h = runs.transfer_function(runs.acceleration(folder, section.surface_nodes()[0]),
                                  noise / 100.0, step)
    keep = (f > 0) & (f <= cutoff)
    f, h = f[keep], np.abs(h[keep])
    published = amplification[:len(f), 1]
    rows = sum(s.rows for s in strata)
    out.checks.append(Check(
        f"NRATTLE: amplification up to {cutoff:g} Hz ({rows} rows of 8-node elements, "
        f"{section.depth / 1000:.1f} km): largest difference over NRATTLE's", np.max(
            np.abs(h - published) / published), TOLERANCE["amplification"]))
    # The closed form that the other problems take for their reference, over NRATTLE's whole
    # band: it agrees to the four decimals that NRATTLE prints.
    closed = np.abs(reference_transfer(profile, amplification[:, 0]))
    out.checks.append(Check(
        "NRATTLE: the closed form of validation/reference.py up to 50 Hz: largest difference "
        "over NRATTLE's (which prints 4 decimals)", np.max(np.abs(
            np.round(closed, 4) - amplification[:, 1]) / amplification[:, 1]),
        TOLERANCE["closed form"]))
    out.figures.append(Figure(
        "nrattle", "NRATTLE's amplification of a crustal profile of 400 layers (86 km, Vs 1.0 "
        "to 3.5 km/s, no damping) over its half-space's outcrop motion, and VARNEK's column.",
        lambda fig: draw_amplification(fig, amplification, f, h), (8.0, 4.0)))


def reference_transfer(profile, frequencies):
    t, vs, rho = profile.T
    vs_h, rho_h = HALF_SPACE
    return reference.surface_transfer(t, rho * vs ** 2, rho, np.zeros(len(t)),
                                      (rho_h * vs_h ** 2, rho_h, 0.0), frequencies)


def draw_amplification(fig, amplification, f, h):
    ax = fig.subplots()
    ax.plot(amplification[:, 0], amplification[:, 1], "k-", lw=1.2, label="NRATTLE")
    ax.plot(f, h, "ro", ms=3, mfc="none", label="VARNEK")
    ax.set_xlim(0.0, 1.05 * f[-1])
    ax.set_xlabel("frequency (Hz)")
    ax.set_ylabel("|surface / half-space outcrop|")
    ax.legend(fontsize=8)
    ax.grid(alpha=0.3)


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
    key="linear-benchmarks",
    title="Published linear benchmarks: DEEPSOIL example 2a and NRATTLE",
    reference="Example 2a of the DEEPSOIL user manual, a linear frequency-domain analysis: one "
              "soil layer 20 m thick (unit weight 20 kN/m3, Vs 500 m/s, no damping) on elastic "
              "rock (25 kN/m3, Vs 760 m/s, 2 % damping), under a Chi-Chi record of 59 s as "
              "outcrop motion of the rock. DEEPSOIL's surface acceleration, its 5 % response "
              "spectrum and the shear strain at 10 m against VARNEK's column of 4-node elements "
              "(15 a wavelength at the cut-off of 50 Hz) on dashpots of the rock. And NRATTLE's "
              "amplification (surface over the half-space's outcrop motion) of the crustal "
              "profile of pyStrata's check: 400 layers from 5 m of Vs 1,005 m/s down to "
              "86 km, on a half-space of Vs 3,500 m/s, without damping; VARNEK's column of "
              "8-node elements on the half-space's dashpots, up to 10 Hz.",
    source="DEEPSOIL 6.1 results (Hashash et al., DEEPSOIL 6.1 User Manual, University of "
           "Illinois at Urbana-Champaign) as kept in the test data of pyStrata "
           "(github.com/arkottke/pystrata, `tests/data/ds-example-2a-le.xlsx`, sheet Layer1, "
           "and the record `tests/data/ChiChi.txt`, MIT licence; the profile from "
           "`tests/propagation_test.py`). Extracted to `validation/data/deepsoil-example-2a/` "
           "by `validation/data/extract.py`. NRATTLE (C. Mueller and D. Boore, U.S. "
           "Geological Survey) results kept in the same test data "
           "(`tests/data/nrattle.ctl`, `tests/data/test_nrattle_02mar12.nrattle_amps4plot."
           "out`), extracted to `validation/data/nrattle/`. See `validation/data/README.md`.",
    run=run)
