"""The result files of a finished run.

dyn/acc<n>.dat: a heading, then time (s), acceleration x (absolute) and y (relative to the base)
in m/s2, one line per time step. dyn/femsig<e>.dat: a heading, then time (s) and the element's
stress x, y, xy in kPa, total, compression positive.

output/output<N>.inp and output/output_max.inp: result model files in blocks opened by a line
"---- ... ----". The node lines carry number, x, y, displacement x, y (m), two zeros and
acceleration x, y in gal; the stress lines, one per integration point, element number, stress
x, y, z, xy, mean stress and deviatoric stress norm in tf/m2 (compression negative) and G/G0;
the strain lines element number, strain x, y, z, engineering shear strain xy, volumetric and
deviatoric strain.
"""
import os
import re
from dataclasses import dataclass

import numpy as np

from ..errors import InputError
from ..scan import read_text

DYN_FOLDER = "dyn"
OUTPUT_FOLDER = "output"
MAX_MODEL = "output_max.inp"
_STEP_MODEL = re.compile(r"output(0|[1-9][0-9]*)\.inp$")

NODE_BANNER = "---- node"
STRESS_BANNER = "---- stress ----"
STRAIN_BANNER = "---- strain ----"
STEPS_BANNER = "---- nstep0"
CLOSING_BANNER = "---- total head ----"
NODE_COLUMNS, STRESS_COLUMNS, STRAIN_COLUMNS = 9, 8, 7


@dataclass
class ResultModel:
    """One result model file: the steps line and the node, stress and strain blocks."""
    step: int  # the file's own step; the step count in the maxima file
    step_count: int
    iteration_limit: int
    tolerance: float
    nodes: np.ndarray  # (nodes, 9)
    stress: np.ndarray  # (lines, 8)
    strain: np.ndarray  # (lines, 7)

    @property
    def displacement(self):
        return self.nodes[:, 3:5]  # m

    @property
    def acceleration(self):
        return self.nodes[:, 7:9]  # gal


def _block(text, banner, end_banner, columns, path):
    start = text.find(banner)
    if start < 0:
        raise InputError(f"{path}: no block '{banner}' (the file is cut short)")
    start = text.find("\n", start) + 1
    end = text.find(end_banner, start)
    if end < 0:
        raise InputError(f"{path}: no block '{end_banner}' (the file is cut short)")
    try:
        values = np.array(text[start:end].split(), dtype=float)
        return values.reshape(-1, columns)
    except ValueError:
        raise InputError(f"{path}: the block '{banner}' is not {columns} numbers a line") \
            from None


def read_model(path):
    text = read_text(path, "result model")
    steps_at = text.find(STEPS_BANNER)
    steps = text[text.find("\n", steps_at) + 1:].split(None, 4)[:4] if steps_at >= 0 else []
    if len(steps) < 4:
        raise InputError(f"{path}: no steps line (the file is cut short)")
    return ResultModel(
        step=int(steps[0]), step_count=int(steps[1]), iteration_limit=int(steps[2]),
        tolerance=float(steps[3]),
        nodes=_block(text, NODE_BANNER, STRESS_BANNER, NODE_COLUMNS, path),
        stress=_block(text, STRESS_BANNER, STRAIN_BANNER, STRESS_COLUMNS, path),
        strain=_block(text, STRAIN_BANNER, CLOSING_BANNER, STRAIN_COLUMNS, path))


def read_history(path, columns, what):
    """A time-history text file without its heading, as an array of `columns` columns."""
    text = read_text(path, what)
    body = text[text.find("\n") + 1:] if "\n" in text else ""
    try:
        return np.array(body.split(), dtype=float).reshape(-1, columns)
    except ValueError:
        raise InputError(f"{path}: not {columns} numbers a line") from None


def acc_path(project_dir, node_number):
    return os.path.join(project_dir, DYN_FOLDER, f"acc{node_number}.dat")


def femsig_path(project_dir, element_number):
    return os.path.join(project_dir, DYN_FOLDER, f"femsig{element_number}.dat")


def read_node_acceleration(project_dir, node_number):
    """Time and x, y acceleration of a node numbered from 1, in m/s2."""
    return read_history(acc_path(project_dir, node_number), 3, f"acceleration of node "
                        f"{node_number}")


def read_element_stresses(project_dir, element_count, progress=None):
    """(elements, steps, 3) stress x, y, xy in kPa, compression positive, from femsig files."""
    histories = []
    for e in range(1, element_count + 1):
        h = read_history(femsig_path(project_dir, e), 4, f"stress of element {e}")
        histories.append(h[:, 1:])
        if progress:
            progress.advance()
    lengths = {len(h) for h in histories}
    if len(lengths) > 1:
        raise InputError(f"the stress files in {os.path.join(project_dir, DYN_FOLDER)} differ in "
                          "length (the run did not finish writing them)")
    return np.stack(histories)


def step_model_paths(project_dir):
    """The step files that exist, as {step: path}."""
    folder = os.path.join(project_dir, OUTPUT_FOLDER)
    found = {}
    for name in os.listdir(folder):
        m = _STEP_MODEL.match(name)
        if m:
            found[int(m.group(1))] = os.path.join(folder, name)
    return dict(sorted(found.items()))


def max_model_path(project_dir):
    return os.path.join(project_dir, OUTPUT_FOLDER, MAX_MODEL)


def per_element(lines, element_count, reduce="mean"):
    """Per-element values from per-integration-point lines (element number in column 0): the
    mean or the largest absolute value of each column over an element's lines."""
    numbers = lines[:, 0].astype(np.int64) - 1
    values = lines[:, 1:]
    if numbers.size and (numbers.min() < 0 or numbers.max() >= element_count):
        raise InputError(f"element number {numbers.max() + 1} beyond the mesh of "
                          f"{element_count} elements")
    if reduce == "max":
        out = np.zeros((element_count, values.shape[1]))
        np.maximum.at(out, numbers, np.abs(values))
        return out
    counts = np.bincount(numbers, minlength=element_count).astype(float)
    sums = np.column_stack([np.bincount(numbers, weights=column, minlength=element_count)
                            for column in values.T])
    with np.errstate(invalid="ignore", divide="ignore"):
        return sums / counts[:, None]
