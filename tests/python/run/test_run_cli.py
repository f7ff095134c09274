"""varnek-run as a user calls it: every fault one message, status 2 for input, a failed stage's
own status with its log named."""
import json
import os
import subprocess

import pytest

import run_standins as si
from conftest import ROOT

LAUNCHER = os.path.join(ROOT, "scripts", "varnek-run")


def set_treatment(run_dir, treatment):
    with open(os.path.join(run_dir, "project", "c.dat"), "w") as f:
        f.write(f"10\n0\n0.01\n0.05\n0.65\n3\n{treatment}\n")


def set_report(run_dir, table):
    path = os.path.join(run_dir, "preparation", "preparation.json")
    with open(path) as f:
        info = json.load(f)
    info["report"] = table
    with open(path, "w") as f:
        json.dump(info, f)


CASES = [
    # what; arguments after RUNDIR; environment; change to RUNDIR; status; the message says
    ("--out with a run folder", ["--out", "x"], {}, None, 2, "goes with a site description"),
    ("an unknown stage", ["--only", "mesh"], {}, None, 2, "invalid choice: 'mesh'"),
    ("a missing program", [], {"VARNEK_BIN": "/nonexistent"}, None, 2,
     "varnek-selfweight not found in /nonexistent"),
    ("a failing stage", [], {"STANDIN_FAIL": "varnek-selfweight"}, None, 3,
     "the selfweight stage ended with status 3 (console: {run}/logs/selfweight.log)\n"
     "  | varnek-selfweight of project/\n  | stand-in fault: the model is wrong"),
    ("a complete status without the end marker", [], {"STANDIN_NOEND": "1"}, None, 2,
     "the analysis stage ended with status 0 but without a_end.dat"),
    ("the free field of a section without side treatment", ["--only", "freefield"], {},
     lambda run: set_treatment(run, 2), 2, "the freefield stage has no part in this run"),
    ("a report option the report does not know", [], {},
     lambda run: set_report(run, {"colour": "red"}), 2,
     "preparation.json report: unrecognized arguments: --colour=red"),
]


@pytest.mark.parametrize("what, args, env, change, status, says", CASES,
                         ids=[c[0] for c in CASES])
def test_a_fault_is_one_message_and_its_status(tmp_path, what, args, env, change, status, says):
    site = si.write_site(str(tmp_path))
    run_dir = os.path.splitext(site)[0]
    si.prepare(site, run_dir)
    if change:
        change(run_dir)
    environment = {**os.environ, "VARNEK_BIN": si.program_folder(str(tmp_path)), **env}
    done = subprocess.run([LAUNCHER, run_dir, *args], capture_output=True, text=True,
                          env=environment, timeout=120)
    assert done.returncode == status
    assert says.format(run=run_dir) in done.stderr
    assert [line.startswith("varnek-run:") for line in done.stderr.splitlines()].count(True) == 1


def test_a_folder_without_run_configuration_is_refused(tmp_path):
    done = subprocess.run([LAUNCHER, str(tmp_path)], capture_output=True, text=True)
    assert (done.returncode, done.stderr) == (
        2, f"varnek-run: {tmp_path} has no config_VARNEK.txt: give a run folder (as "
           "varnek-prepare makes it) or a site description SITE.toml\n")
