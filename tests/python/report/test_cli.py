"""The launcher on broken run folders: one message naming what is missing, status 2."""
import os
import re
import shutil

import pytest

from conftest import run_tool
from varnek.report.cli import main


def without(*relative):
    def breaks(run):
        for r in relative:
            os.remove(os.path.join(run, r))
        return []
    return breaks


def no_results(run):
    for r in ("section/output", "section/dyn"):
        shutil.rmtree(os.path.join(run, r))
    os.remove(os.path.join(run, "a_end.dat"))
    return []


def no_step_files(run):
    shutil.rmtree(os.path.join(run, "section", "output"))
    os.mkdir(os.path.join(run, "section", "output"))
    return []


def nodes(text):
    return lambda run: ["--nodes", text]


def list_naming(name):
    def breaks(run):
        with open(os.path.join(run, "section", "input_VARNEK.inp"), "w") as f:
            f.write(f"c.dat\n{name}\nnodes.dat\nelements.dat\n")
        return []
    return breaks


@pytest.mark.parametrize("breaks, message", [
    (no_results, r"no results in .*section: it has neither output/ nor dyn/"),
    (without("a_end.dat"), r"the run in .* did not finish: there is no a_end.dat"),
    (nodes("1,14"), r"node 14 is not in the mesh: its nodes are numbered 1 to 13"),
    (nodes("0"), r"node 0 is not in the mesh"),
    (without("section/dyn/femsig2.dat"), r"missing file: .*section/dyn/femsig2.dat"),
    (without("section/dyn/acc6.dat"), r"missing file: .*section/dyn/acc6.dat"),
    (without("section/output/output_max.inp"), r"missing file: .*output_max.inp"),
    (list_naming("quake.csv"), r"missing file: .*section/quake.csv \(seismic wave\)"),
    (no_step_files, r"missing file: .*section/output/output0.inp"),
], ids=["no results", "unfinished", "node beyond", "node 0", "femsig", "acc", "maxima", "wave",
        "no steps"])
def test_a_broken_run_gives_one_line_and_status_2(mixed_run, tmp_path, capsys, breaks, message):
    run = str(tmp_path / "run")
    shutil.copytree(mixed_run, run)
    out_dir = tmp_path / "report"
    status = main([run, *breaks(run), "--out", str(out_dir)])
    err = capsys.readouterr().err
    assert status == 2
    assert err.startswith("varnek-report: ") and err.count("\n") == 1, err
    assert re.search(message, err), err
    assert not out_dir.exists() or not any(out_dir.iterdir())  # nothing half written


@pytest.mark.parametrize("where", ["nowhere", "unfinished"])
def test_the_launcher_ends_with_status_2_and_no_traceback(mixed_run, tmp_path, where):
    run = str(tmp_path / where)
    if where == "unfinished":
        shutil.copytree(mixed_run, run)
        os.remove(os.path.join(run, "a_end.dat"))
    status, out, err = run_tool(run)
    assert status == 2 and out == ""
    assert err.startswith("varnek-report: ") and err.count("\n") == 1, err
