"""The validation manual's problems on their short setting: every measured difference within
the tolerance the manual holds it to, so that a change that moves a figure past it fails here.
The full setting writes docs/validation.md (python3 validation/make_manual.py)."""
import os
import sys

import pytest

from conftest import ROOT
from varnek.errors import InputError
from varnek.programs import PROGRAMS, find_program

sys.path.insert(0, ROOT)
from validation import PROBLEMS  # noqa: E402
from validation.thin_layer import modes_program  # noqa: E402


def built():
    try:
        return all(os.access(find_program(p), os.X_OK) for p in PROGRAMS) and \
            os.access(modes_program(), os.X_OK)
    except InputError:
        return False


@pytest.mark.parametrize("problem", PROBLEMS, ids=[p.key for p in PROBLEMS])
def test_every_difference_is_within_its_tolerance(problem, tmp_path):
    if not built():
        pytest.skip("the programs are not built: run scripts/build.sh first")
    outcome = problem.run(True, str(tmp_path))
    assert outcome.checks
    beyond = [f"{c.what}: {c.shown(c.measured)}, tolerance {c.bound}"
              for c in outcome.checks if not c.passed]
    assert not beyond, "\n".join(beyond)


def test_the_manual_holds_each_problem_with_its_figure_and_table(tmp_path):
    if not built():
        pytest.skip("the programs are not built: run scripts/build.sh first")
    from validation import make_manual
    assert make_manual.main(["--only", "self-weight", "--short", "--out", str(tmp_path)]) == 0
    text = (tmp_path / "validation.md").read_text()
    assert "## 1. Self-weight stresses of a confined column" in text
    assert "(images/validation/self-weight.png)" in text
    assert (tmp_path / "images" / "validation" / "self-weight.png").stat().st_size > 0
    assert text.count("| passes |") == 6 and "beyond tolerance**" not in text
