#!/usr/bin/python3
"""Writes the validation manual: runs every problem, draws its figures and writes
docs/validation.md with the figures in docs/images/validation/.

    python3 validation/make_manual.py [--short] [--only KEY,...] [--out DIR] [--work DIR]

--short runs the coarse and short setting that the test suite runs. The exit status is 1 when
a measured difference lies beyond its tolerance (the manual is written all the same), 2 when a
program is missing or a run fails.
"""
import argparse
import os
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
for path in (ROOT, os.path.join(ROOT, "python")):
    if path not in sys.path:
        sys.path.insert(0, path)

import matplotlib  # noqa: E402

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

from validation import PROBLEMS  # noqa: E402

MANUAL = "validation.md"
IMAGES = os.path.join("images", "validation")
COMMAND = "python3 validation/make_manual.py"

INTRODUCTION = f"""\
# Validation

This manual is written by `{COMMAND}` from runs of VARNEK's programs (`varnek`,
`varnek-selfweight`, `varnek-freefield`) on the projects of each problem. For every problem it
gives the reference, its source, the figure of VARNEK against it, the difference measured and
the tolerance the problem is held to. The test suite runs the same problems on a coarse and
short setting (`tests/python/validation/`), so that a change that moves a result past its
tolerance fails there. The published data of other programs lie in `validation/data/` with
their provenance.
"""


def run_problems(problems, short, work, log=sys.stderr):
    """[(problem, outcome, seconds)] for the problems, each in a folder of its own."""
    done = []
    for problem in problems:
        folder = os.path.join(work, problem.key)
        os.makedirs(folder, exist_ok=True)
        start = time.monotonic()
        print(f"{problem.key} ...", file=log, flush=True)
        outcome = problem.run(short, folder)
        seconds = time.monotonic() - start
        failed = sum(not c.passed for c in outcome.checks)
        print(f"{problem.key}: {len(outcome.checks)} checks, {failed} beyond tolerance, "
              f"{seconds:.1f} s", file=log, flush=True)
        done.append((problem, outcome, seconds))
    return done


def draw_figures(outcome, image_dir):
    paths = []
    for figure in outcome.figures:
        fig = plt.figure(figsize=figure.size, layout="constrained")
        figure.draw(fig)
        path = os.path.join(image_dir, figure.name + ".png")
        fig.savefig(path, dpi=90)
        plt.close(fig)
        paths.append(path)
    return paths


def check_table(checks):
    lines = ["| Measured | VARNEK | Tolerance | |", "|---|---|---|---|"]
    for c in checks:
        what = c.what.replace("|", "\\|")
        lines.append(f"| {what} | {c.shown(c.measured)} | {c.bound} | "
                     f"{'passes' if c.passed else '**beyond tolerance**'} |")
    return "\n".join(lines)


def manual_text(results, short):
    parts = [INTRODUCTION]
    if short:
        parts.append("*Written from the short setting (`--short`), not the full one.*\n")
    parts.append("## Summary\n")
    lines = ["| Problem | Checks | Largest share of its tolerance | Result |", "|---|---|---|---|"]
    for problem, outcome, _ in results:
        worst = max((c.measured / c.tolerance if not c.at_least else c.tolerance / c.measured
                     for c in outcome.checks), default=0.0)
        failed = sum(not c.passed for c in outcome.checks)
        lines.append(f"| [{problem.title}](#{problem.key}) | {len(outcome.checks)} | "
                     f"{100.0 * worst:.0f} % | "
                     f"{'all pass' if not failed else f'**{failed} beyond tolerance**'} |")
    parts.append("\n".join(lines) + "\n")
    for number, (problem, outcome, _) in enumerate(results, 1):
        parts.append(f'<a id="{problem.key}"></a>\n\n## {number}. {problem.title}\n')
        parts.append(f"**Reference.** {problem.reference}\n")
        parts.append(f"**Source.** {problem.source}\n")
        for figure in outcome.figures:
            parts.append(f"![{figure.name}]({IMAGES}/{figure.name}.png)\n\n*{figure.caption}*\n")
        parts.extend(note + "\n" for note in outcome.notes)
        parts.append(check_table(outcome.checks) + "\n")
    return "\n".join(parts)


def parser():
    p = argparse.ArgumentParser(prog="make_manual.py", description=__doc__.split("\n\n")[0])
    p.add_argument("--short", action="store_true", help="the coarse, short setting of the tests")
    p.add_argument("--only", help="comma-separated problem keys: " +
                   ", ".join(p.key for p in PROBLEMS))
    p.add_argument("--out", default=os.path.join(ROOT, "docs"),
                   help="folder of the manual (default: docs/ of the source tree)")
    p.add_argument("--work", help="scratch folder for the runs (default: a temporary one)")
    return p


def main(argv=None):
    args = parser().parse_args(argv)
    problems = PROBLEMS
    if args.only:
        keys = args.only.split(",")
        unknown = [k for k in keys if k not in {p.key for p in PROBLEMS}]
        if unknown:
            parser().error(f"unknown problem {unknown[0]}")
        problems = [p for p in PROBLEMS if p.key in keys]
    image_dir = os.path.join(args.out, IMAGES)
    os.makedirs(image_dir, exist_ok=True)
    with tempfile.TemporaryDirectory(prefix="varnek-validation-") as scratch:
        try:
            results = run_problems(problems, args.short, args.work or scratch)
        except Exception as e:  # a missing program or a failed run: no manual
            print(f"make_manual.py: {e}", file=sys.stderr)
            return 2
    drawn = set()
    for _, outcome, _ in results:
        drawn.update(draw_figures(outcome, image_dir))
    if not args.only:  # figures of problems or figures that are gone
        for name in os.listdir(image_dir):
            if name.endswith(".png") and os.path.join(image_dir, name) not in drawn:
                os.remove(os.path.join(image_dir, name))
    with open(os.path.join(args.out, MANUAL), "w") as f:
        f.write(manual_text(results, args.short))
    total = sum(s for _, _, s in results)
    failed = sum(not c.passed for _, o, _ in results for c in o.checks)
    print(f"wrote {os.path.join(args.out, MANUAL)}: {len(results)} problems, {total:.0f} s, "
          f"{failed} checks beyond tolerance", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
