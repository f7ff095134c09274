"""Ctrl-C or SIGTERM while a stage runs: the signal goes on to the stage, its log ends with the
end and the status, nothing half-written is left, varnek-run ends with 130 or 143, and the next
run goes on from the interrupted stage."""
import glob
import io
import os
import shutil
import signal
import threading
import time

import pytest

import run_standins as si
from conftest import PROGRAM, ROOT
from varnek.run import Settings, resolve, run_chain
from varnek.run.display import PlainView


def signal_when(log, text, signum):
    """Sends signum to this process, where varnek-run runs, once `text` is in the log."""
    def watch():
        end = time.monotonic() + 120
        while time.monotonic() < end:
            try:
                with open(log, encoding="utf-8", errors="replace") as f:
                    if text in f.read():
                        os.kill(os.getpid(), signum)
                        return
            except FileNotFoundError:
                pass
            time.sleep(0.01)
    threading.Thread(target=watch, daemon=True).start()


def chain(run, **how):
    return run_chain(run, PlainView(io.StringIO()), **how)


def log_end(run_dir, stage):
    with open(os.path.join(run_dir, "logs", f"{stage}.log"), encoding="utf-8") as f:
        lines = f.read().splitlines()
    assert lines[-2].startswith("# end ")
    return lines[-1]


def test_an_interrupted_analysis_leaves_no_end_marker_nor_work_files_and_resumes(
        tmp_path, monkeypatch):
    if not os.access(PROGRAM, os.X_OK):
        pytest.skip("build/varnek is missing: run scripts/build.sh first")
    si.tool_stages(monkeypatch)  # the report by its stand-in
    run_dir = str(tmp_path / "run")
    shutil.copytree(os.path.join(ROOT, "examples", "column"), os.path.join(run_dir, "column"))
    with open(os.path.join(run_dir, "config_VARNEK.txt"), "w") as f:
        f.write("column/\n")
    run = resolve(run_dir, settings=Settings(selfweight_method="k0"))
    log = os.path.join(run_dir, "logs", "analysis.log")

    # In the iteration, and then in the output stages, where the work files are open.
    for signum, text in ((signal.SIGINT, "等価線形化計算 1 回目"),
                         (signal.SIGTERM, "応答加速度終了")):
        signal_when(log, text, signum)
        assert chain(run) == 128 + signum
        assert log_end(run_dir, "analysis") == f"# status {128 + signum}"
        assert not os.path.exists(os.path.join(run_dir, "a_end.dat"))
        assert glob.glob(os.path.join(run_dir, "work_*")) == []
        assert not os.path.exists(os.path.join(run_dir, "logs", "analysis.record"))
        assert si.ran(run_dir) == []  # no report of the interrupted run

    assert chain(run) == 0
    assert os.path.exists(os.path.join(run_dir, "a_end.dat"))
    assert log_end(run_dir, "analysis") == "# status 0"
    assert si.ran(run_dir) == ["report"]


def test_an_interrupted_free_field_leaves_no_partial_folder(tmp_path, monkeypatch):
    monkeypatch.setenv("VARNEK_BIN", si.program_folder(str(tmp_path)))
    monkeypatch.setenv("STANDIN_SLEEP", "varnek-freefield")
    si.tool_stages(monkeypatch)
    run_dir = os.path.splitext(si.write_site(str(tmp_path)))[0]
    run = resolve(run_dir + ".toml")
    signal_when(os.path.join(run_dir, "logs", "freefield.log"), "等価線形化計算", signal.SIGTERM)
    assert chain(run) == 143
    assert not os.path.exists(os.path.join(run_dir, "project", "output_ff.partial"))
    assert log_end(run_dir, "freefield") == "# status 143"
    assert si.ran(run_dir) == ["prepare", "varnek-selfweight", "varnek-freefield"]

    monkeypatch.delenv("STANDIN_SLEEP")
    assert chain(run) == 0
    assert si.ran(run_dir) == ["varnek-freefield", "varnek", "report"]
