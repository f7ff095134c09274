"""A valley in sections of two widths with each side treatment: the better the side boundary,
the less the motion over the valley depends on how far away the sides are."""
import os

import numpy as np

from . import runs, sections
from .harness import Check, Figure, Outcome, Problem

SOILS = [sections.Soil("soft soil", 150.0, 17.0, 0.03, 0.40),
         sections.Soil("stiff soil", 300.0, 19.5, 0.02, 0.35),
         sections.Soil("valley fill", 100.0, 16.0, 0.04, 0.45)]
# Real dashpots for the elastic base, as the transmitting sides need.
BASES = {"rigid base": None, "elastic half-space": sections.HalfSpace(600.0, 21.0, 0.0)}
TREATMENTS = {0: "transmitting", 1: "dashpots with free field", 2: "none"}
TOLERANCE = {0: 0.01, 1: 0.30}  # the largest rms difference over the valley
APART = 10.0  # no side treatment differs at least so many times more than the transmitting


def layout(short):
    """Cell width and height (m), columns of the narrow section, rows of each of the two
    strata, valley columns and rows: the valley in the middle, 16 m (short: 8 m) wide."""
    if short:
        return 4.0, 2.5, 6, (4, 4), 2, 3
    return 2.0, 1.25, 24, (8, 8), 8, 5


def section(short, scale, treatment, base):
    width, height, columns, (soft, stiff), valley_columns, valley_rows = layout(short)
    columns *= scale
    return sections.Section(
        SOILS, [sections.Stratum(soft * height, 0, soft),
                sections.Stratum(stiff * height, 1, stiff)],
        kind=4, columns=columns, width=width, base=base, side_treatment=treatment,
        valley=((columns - valley_columns) // 2, valley_columns, valley_rows, 2))


def valley_nodes(model):
    first, count = model.valley[0], model.valley[1]
    return model.surface_nodes()[first:first + count + 1]


def run(short, work):
    wave = sections.example_record(samples=256 if short else None)
    analysis = sections.Analysis(cutoff=8.0 if short else 10.0)
    out = Outcome()
    results = {}
    for label, base in BASES.items():
        results[label] = compare(short, work, wave, analysis, label, base, out)
    width, _, columns, _, valley_columns, _ = layout(short)
    out.figures.append(Figure(
        "valley", f"A valley {valley_columns * width:g} m wide in sections {columns * width:g} m "
        f"(W) and {3 * columns * width:g} m (3W) wide with each side treatment, on a rigid base "
        "and on an elastic half-space: peak surface acceleration over the valley in both "
        "sections, and the rms difference of the two sections' motions at each node.",
        lambda fig: draw(fig, results), (10.0, 7.5)))
    return out


def compare(short, work, wave, analysis, label, base, out):
    """The surface motions over the valley at both widths with each side treatment, and the
    checks of their differences."""
    results, worst = {}, {}
    for treatment, name in TREATMENTS.items():
        motions = []
        for scale in (1, 3):
            model = section(short, scale, treatment, base)
            folder = os.path.join(work, f"{'rigid' if base is None else 'elastic'}-"
                                        f"{treatment}-width-{scale}")
            sections.write_project(folder, model, analysis, wave)
            runs.analyse(folder, freefield=treatment != 2)
            nodes = valley_nodes(model)
            x = model.nodes()[0][nodes, 0] - model.nodes()[0][nodes[0], 0]
            motions.append((x, [runs.acceleration(folder, n) for n in nodes]))
        (x, narrow), (_, wide) = motions
        differences = [runs.relative_rms(a, b) for a, b in zip(narrow, wide)]
        worst[treatment] = max(differences)
        results[treatment] = (x, narrow, wide, differences)
        if treatment in TOLERANCE:
            out.checks.append(Check(
                f"{label}, side treatment {treatment} ({name}): largest rms difference over the "
                f"valley between the sections of width W and 3W, over the wide section's rms "
                f"(mean {100 * np.mean(differences):.3g} %)", worst[treatment],
                TOLERANCE[treatment]))
    out.checks.append(Check(
        f"{label}, no side treatment (2) against transmitting sides (0): ratio of their "
        f"largest differences ({100 * worst[2]:.3g} % and {100 * worst[0]:.3g} %)",
        worst[2] / worst[0], APART, at_least=True, percent=False))
    return results


def draw(fig, results):
    rows = fig.subplots(len(results), len(TREATMENTS) + 1)
    for axes, (label, by_treatment) in zip(rows, results.items()):
        for ax, (treatment, (x, narrow, wide, differences)) in zip(axes, by_treatment.items()):
            ax.plot(x, [np.max(np.abs(a)) for a in wide], "k-o", ms=3, label="3W")
            ax.plot(x, [np.max(np.abs(a)) for a in narrow], "r--s", ms=3, mfc="none",
                    label="W")
            ax.set_title(f"{label}\n{treatment}: {TREATMENTS[treatment]}", fontsize=8)
            ax.grid(alpha=0.3)
            axes[-1].semilogy(x, differences, "o-", ms=3,
                              label=f"{treatment}: {TREATMENTS[treatment]}")
        axes[0].set_ylabel("peak surface acceleration (m/s2)", fontsize=8)
        axes[-1].set_title(f"{label}\nW against 3W", fontsize=8)
        axes[-1].set_ylabel("rms difference over the rms of 3W", fontsize=8)
        axes[-1].grid(alpha=0.3, which="both")
    rows[0][0].legend(fontsize=7)
    rows[0][-1].legend(fontsize=6)
    for ax in rows[-1]:
        ax.set_xlabel("x over the valley (m)")


PROBLEM = Problem(
    key="valley",
    title="A valley at two widths with each side treatment",
    reference="A soft valley fill (Vs 100 m/s) 16 m wide and 6.25 m deep in 10 m of soft soil "
              "(150 m/s) over 10 m of stiff soil (300 m/s), on a rigid base and on rock "
              "(600 m/s), linear, under "
              "the El Centro record as outcrop motion (cut-off 10 Hz), in a section of width W "
              "= 48 m and in one of 3W = 144 m, 4-node elements of 2 m by 1.25 m. The sides "
              "stand for the soil beyond them: the closer the surface motion over the valley "
              "in the narrow section to that in the wide one, the better they do. The "
              "transmitting boundary (treatment 0) is held to a few percent, side dashpots "
              "(1) to what they can do for the waves the valley scatters, and free edges (2) "
              "must be seen to do far worse.",
    source="The principle of the check: Lysmer, J., and Waas, G. (1972), Shear waves in plane "
           "infinite structures, J. Eng. Mech. Div. 98(EM1); the same check with the bench "
           "section is in `bench/README.md` (free-field program).",
    run=run)
