"""The project behind a run folder, found and read the way the program finds and reads it.

The working directory of a run holds config_VARNEK.txt, whose first line is the project folder
prefix with its trailing "/" (a missing or empty file means the working directory itself), and
the markers a_start.dat and a_end.dat. The project folder holds Flag_VARNEK.inp and
input_VARNEK.inp, the list of the model's files: constants, wave, nodes, elements, materials,
boundary conditions, one name a line, each glued to the prefix as it stands.
"""
import math
import os
from dataclasses import dataclass, field

import numpy as np

from .errors import InputError
from .scan import (comma_floats, data_lines, leading_float, leading_ints, read_text, text_lines,
                   two_floats)

CONFIG_FILE = "config_VARNEK.txt"
FLAG_FILE = "Flag_VARNEK.inp"
LIST_FILE = "input_VARNEK.inp"
END_MARKER = "a_end.dat"
# Slots of the file list that the report reads.
SLOT_CONSTANTS, SLOT_WAVE, SLOT_NODES, SLOT_ELEMENTS = 0, 1, 2, 3
LIST_SLOTS = 18
ELEMENT_NODE_COUNTS = (4, 6, 8)


@dataclass
class Constants:
    cutoff_frequency: float  # Hz, as given; the wave may lower it to the Nyquist frequency
    time_step: float  # s
    tolerance: float
    effective_strain_ratio: float
    iteration_limit: int
    side_boundary_type: int


@dataclass
class Flags:
    given: bool = False
    format_date: int = 0
    equivalent_linear: bool = False
    single_step_output: bool = False


@dataclass
class Wave:
    """The input motion as the analysis uses it: resampled on the time step, in m/s2."""
    name: str
    time_step: float
    acc: np.ndarray  # sampleCount values, before the padding
    padded_length: int  # power of two at least sampleCount
    line_count: int  # frequency lines 0 .. line_count - 1 are solved
    cutoff_frequency: float  # Hz, after the limit to the Nyquist frequency

    @property
    def sample_count(self):
        return len(self.acc)

    @property
    def times(self):
        return np.arange(self.sample_count) * self.time_step

    @property
    def highest_line_frequency(self):
        return (self.line_count - 1) / (self.padded_length * self.time_step)


@dataclass
class Element:
    material: int  # from 0
    nodes: np.ndarray  # node indices from 0, in the program's order for the element kind


@dataclass
class Project:
    run_dir: str
    prefix: str  # first line of config_VARNEK.txt
    directory: str  # the project folder
    files: list = field(default_factory=list)  # the slots of the file list
    flags: Flags = None
    constants: Constants = None
    wave: Wave = None
    nodes: np.ndarray = None  # (n, 2) x, y in m
    elements: list = None
    # Stress and strain lines belong to the element they name only in a mesh of 4-node elements.
    only_four_node: bool = False

    def path(self, name):
        return project_path(self.run_dir, self.prefix, name)

    @property
    def node_counts(self):
        return sorted({len(e.nodes) for e in self.elements})


def project_path(run_dir, prefix, name):
    # The prefix and the name run together as the program joins them; a relative result lies
    # below the working directory of the run.
    return os.path.join(run_dir, prefix + name)


def read_prefix(run_dir):
    config = os.path.join(run_dir, CONFIG_FILE)
    if not os.path.isfile(config):
        return ""
    lines = text_lines(read_text(config, "run configuration"))
    return lines[0] if lines else ""


def read_flags(path):
    flags = Flags()
    try:
        tokens = read_text(path, "flag file").split()
    except InputError:
        return flags  # the program runs on without one: a single pass, per-step output
    flags.given = True

    def number(i):
        try:
            return int(tokens[i])
        except (IndexError, ValueError):
            return None

    date, limit, linear = number(0), number(1), number(2)
    if date is None or limit is None:
        return flags
    flags.format_date = date
    flags.equivalent_linear = linear == 1
    if date > 20150122 and linear in (0, 1):
        flags.single_step_output = number(3) == 1
    return flags


def read_file_list(path, prefix):
    text = read_text(path, "file list of the project")
    slots = []
    for _, line in data_lines(text):
        if len(slots) < LIST_SLOTS:
            slots.append(prefix + line)
    return slots


def read_constants(path):
    values = []
    for _, line in data_lines(read_text(path, "analysis constants")):
        v = leading_float(line)
        if v is not None:
            values.append(v)
    if len(values) < 7:
        raise InputError(f"{path}: the analysis constants need 7 values, the file gives "
                          f"{len(values)}")
    return Constants(cutoff_frequency=values[0], time_step=values[2], tolerance=values[3],
                     effective_strain_ratio=values[4], iteration_limit=int(values[5]),
                     side_boundary_type=int(values[6]))


def resampled_length(t_end, time_step):
    # The 1e-08 keeps an end time that is a whole multiple of the step from gaining a sample.
    return int(math.ceil((t_end - 1e-08) / time_step)) + 1


def resample_linear(times, values, time_step, length):
    """Linear interpolation on k * time_step with a running output index, segment by segment;
    the time is taken afresh at each segment and carried by addition inside it."""
    acc = np.zeros(length)
    if not times:
        return acc
    t_end, k = times[-1], 0
    for s in range(len(times) - 1):
        if times[s] < 0.0:
            continue
        if times[s] > t_end:
            break
        d = times[s + 1] - times[s]
        if d == 0.0:
            break  # the program stops here too, and keeps zeros behind
        slope = (values[s + 1] - values[s]) / d
        t = k * time_step
        while not t > times[s + 1]:
            if k >= length:
                return acc
            acc[k] = (t - times[s]) * slope + values[s]
            k += 1
            t += time_step
    return acc


def frequency_line_count(cutoff, padded, time_step):
    """How many lines from 0 up lie at or below the cut-off, counted as the program counts."""
    f = (np.arange(padded, dtype=float) / float(padded)) / time_step
    above = np.nonzero(cutoff < f)[0]
    return int(above[0]) if above.size else padded


def read_wave(path, constants):
    header, times, values = None, [], []
    for _, line in data_lines(read_text(path, "seismic wave")):
        if header is None:
            header = line.split(",")
            continue
        sample = comma_floats(line)
        if sample is not None:
            times.append(sample[0])
            values.append(sample[1])
    if header is None or len(header) < 3:
        raise InputError(f"{path}: the wave needs a header of three comma-separated fields")
    factor = leading_float(header[2])
    factor = 0.0 if factor is None else factor
    values = [v * 0.01 * factor for v in values]  # gal to m/s2
    dt = constants.time_step
    if not dt > 0.0:
        raise InputError(f"the analysis constants give the time step {dt}: no wave")
    t_end = times[-1] if times else 0.0
    acc = resample_linear(times, values, dt, resampled_length(t_end, dt))
    padded = 1 << max(0, (len(acc) - 1).bit_length())
    count = frequency_line_count(constants.cutoff_frequency, padded, dt)
    cutoff = constants.cutoff_frequency
    if not padded // 2 + 1 > count:
        count, cutoff = padded // 2 + 1, 0.5 / dt
    return Wave(name=header[0].strip() or os.path.basename(path), time_step=dt, acc=acc,
                padded_length=padded, line_count=count, cutoff_frequency=cutoff)


def read_nodes(path):
    xy = [v for v in (two_floats(line) for _, line in data_lines(read_text(path, "node file")))
          if v is not None]
    return np.array(xy, dtype=float).reshape(-1, 2)


def read_elements(path, node_count):
    elements = []
    for number, line in data_lines(read_text(path, "element file")):
        head = leading_ints(line, 3)
        if len(head) < 2 or head[1] not in ELEMENT_NODE_COUNTS:
            continue  # the program builds no element from such a line
        count = head[1]
        fields = leading_ints(line, 3 + count)
        nodes = fields[3:] + [0] * (3 + count - len(fields))  # a short line leaves node 0
        bad = [n for n in nodes if not 0 <= n < node_count]
        if bad:
            raise InputError(f"{path}:{number}: node {bad[0]} is not in the node list of "
                              f"{node_count}")
        elements.append(Element(material=head[0], nodes=np.array(nodes, dtype=np.int64)))
    return elements


def load_project(run_dir):
    """Reads the run configuration, the flags, the file list and from it the constants, the
    wave, the nodes and the elements."""
    if not os.path.isdir(run_dir):
        raise InputError(f"no run folder {run_dir}")
    prefix = read_prefix(run_dir)
    directory = os.path.normpath(project_path(run_dir, prefix, ""))
    if not os.path.isdir(directory):
        raise InputError(f"the project folder {directory} named by "
                          f"{os.path.join(run_dir, CONFIG_FILE)} does not exist")
    project = Project(run_dir=run_dir, prefix=prefix, directory=directory)
    project.flags = read_flags(project.path(FLAG_FILE))
    project.files = read_file_list(project.path(LIST_FILE), prefix)
    if len(project.files) <= SLOT_ELEMENTS:
        raise InputError(f"{project.path(LIST_FILE)} names {len(project.files)} files; the "
                          "constants, wave, node and element files are needed")

    def slot(k):
        return os.path.join(run_dir, project.files[k])

    project.constants = read_constants(slot(SLOT_CONSTANTS))
    project.wave = read_wave(slot(SLOT_WAVE), project.constants)
    project.nodes = read_nodes(slot(SLOT_NODES))
    project.elements = read_elements(slot(SLOT_ELEMENTS), len(project.nodes))
    if not project.elements:
        raise InputError(f"{slot(SLOT_ELEMENTS)} gives no element of 4, 6 or 8 nodes")
    project.only_four_node = project.node_counts == [4]
    return project
