"""Running the programs on a project folder and reading what the problems compare."""
import os
import subprocess

import numpy as np

from varnek.programs import ANALYSIS, FREEFIELD, SELFWEIGHT, find_program
from varnek.report.results import max_model_path, read_model, read_node_acceleration


class RunFailed(RuntimeError):
    pass


def run(folder, program=ANALYSIS, *arguments, timeout=600):
    """Runs one of the programs in folder (its working directory); returns the console."""
    done = subprocess.run([find_program(program), *arguments], cwd=folder,
                          stdin=subprocess.DEVNULL, capture_output=True, timeout=timeout,
                          env=dict(os.environ, OMP_NUM_THREADS=os.environ.get(
                              "OMP_NUM_THREADS", "1")))
    console = (done.stdout + done.stderr).decode("utf-8", errors="replace")
    if done.returncode != 0 or (program == ANALYSIS and not
                                os.path.exists(os.path.join(folder, "a_end.dat"))):
        raise RunFailed(f"{program} in {folder} ended with status {done.returncode}:\n"
                        f"{console[-2000:]}")
    return console


def analyse(folder, selfweight="k0", freefield=False):
    """The chain in folder: the self-weight analysis by its method ("k0" or "gravity"), the
    free-field program when asked, then the dynamic analysis; returns the analysis console."""
    run(folder, SELFWEIGHT, "--method", selfweight)
    if freefield:
        run(folder, FREEFIELD)
    return run(folder, ANALYSIS)


def acceleration(folder, node):
    """Absolute x acceleration (m/s2) of a node numbered from 0, over the record."""
    return read_node_acceleration(folder, node + 1)[:, 1]


def max_model(folder):
    return read_model(max_model_path(folder))


def iterations(console):
    """The ERROR of every equivalent-linear iteration shown on the console."""
    errors = []
    for line in console.splitlines():
        if line.startswith("ERROR = "):
            errors.append(float(line.split()[2]))
    return errors


def relative_rms(a, b):
    """sqrt(sum (a - b)^2 / sum b^2) over the common length."""
    n = min(len(a), len(b))
    a, b = np.asarray(a[:n]), np.asarray(b[:n])
    return float(np.sqrt(np.sum((a - b) ** 2) / np.sum(b ** 2)))


def transfer_function(out, into, time_step):
    """Frequencies and the complex ratio of the spectra of two records of one length."""
    return (np.fft.rfftfreq(len(into), time_step),
            np.fft.rfft(out) / np.fft.rfft(into))
