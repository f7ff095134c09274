"""Shared fixtures: runs of the program on a tiny mixed mesh and on the bundled example."""
import os
import shutil
import subprocess
import sys
import tempfile

import pytest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "python"))

PROGRAM = os.path.join(ROOT, "build", "varnek")
LAUNCHER = os.path.join(ROOT, "scripts", "varnek-report")

# A 4-node square, an 8-node square beside it and a 6-node triangle on top of the 8-node one,
# sharing nodes; the base is fixed. 13 nodes, 3 elements, 21 steps of 0.01 s.
MIXED_NODES = ("0 0\n1 0\n1 1\n0 1\n2 0\n2 1\n1.5 0\n2 0.5\n1.5 1\n1 0.5\n1.5 1.5\n1.25 1.25\n"
               "1.75 1.25\n")
MIXED_ELEMENTS = "0 4 1 0 1 2 3\n1 8 1 1 4 5 2 6 7 8 9\n1 6 1 5 10 2 11 8 12\n"
MIXED_STEPS, MIXED_DT = 21, 0.01


def write_mixed_project(folder, single_step):
    files = {
        "Flag_VARNEK.inp": f"20200101 500 1 {1 if single_step else 0}\n",
        "input_VARNEK.inp": "c.dat\nwave.csv\nnodes.dat\nelements.dat\nmat.dat\nbc.dat\n",
        "c.dat": "10\n0\n0.01\n0.05\n0.65\n3\n2\n",
        "wave.csv": "w,0.01,1\n" + "".join(f"{k * 0.01:g},{(k % 5) * 10.0 - 20.0:g}\n"
                                         for k in range(MIXED_STEPS)),
        "nodes.dat": MIXED_NODES,
        "elements.dat": MIXED_ELEMENTS,
        # An elastic gravel and a table-model clay.
        "mat.dat": "2\n5\n0.0019\n0.0019\n0\n80\n0.3\n0.03\n2\n0.0017\n0.0017\n0\n30\n0.4\n"
                   "0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n0.2\n2\n5\n15\n",
        "bc.dat": "0 2 0 0\n1 2 0 0\n4 2 0 0\n6 2 0 0\n",
        "output0.inp": "---- stress ----\n" + "".join(f"{i + 1} -1 -2 -1 0.1 0 0\n"
                                                  for i in range(4 + 9 + 7)),
    }
    os.makedirs(folder, exist_ok=True)
    for name, text in files.items():
        with open(os.path.join(folder, name), "w") as f:
            f.write(text)


def run_program(run_dir):
    if not os.access(PROGRAM, os.X_OK):
        pytest.skip("build/varnek is missing: run scripts/build.sh first")
    done = subprocess.run([PROGRAM], cwd=run_dir, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, timeout=120)
    assert done.returncode == 0, done.stderr.decode(errors="replace")
    assert os.path.exists(os.path.join(run_dir, "a_end.dat"))
    return run_dir


@pytest.fixture(scope="session")
def scratch():
    with tempfile.TemporaryDirectory(prefix="varnek-report-test-") as folder:
        yield folder


def _mixed_run(scratch, single_step):
    run_dir = os.path.join(scratch, "mixed-single" if single_step else "mixed")
    # The project lies in a subfolder named by a relative prefix in config_VARNEK.txt.
    write_mixed_project(os.path.join(run_dir, "section"), single_step)
    with open(os.path.join(run_dir, "config_VARNEK.txt"), "w") as f:
        f.write("section/\n")
    return run_program(run_dir)


@pytest.fixture(scope="session")
def mixed_run(scratch):
    """A finished per-step run of the mixed mesh, with its project in section/."""
    return _mixed_run(scratch, single_step=False)


@pytest.fixture(scope="session")
def mixed_single_run(scratch):
    """The same mesh on the single-step output path."""
    return _mixed_run(scratch, single_step=True)


@pytest.fixture(scope="session")
def example_run(scratch):
    """The bundled example, run once per session (about 300 MB of results)."""
    run_dir = os.path.join(scratch, "example")
    shutil.copytree(os.path.join(ROOT, "examples", "column"), os.path.join(run_dir, "column"))
    with open(os.path.join(run_dir, "config_VARNEK.txt"), "w") as f:
        f.write(os.path.join(run_dir, "column") + "/\n")
    return run_program(run_dir)


def run_tool(*args):
    """The launcher as a user calls it: exit status, standard output, standard error."""
    done = subprocess.run([LAUNCHER, *args], capture_output=True, text=True, timeout=300)
    return done.returncode, done.stdout, done.stderr
