"""A finished run turned into pictures, a one-page summary and ParaView files."""
import os
import sys
from dataclasses import dataclass

import numpy as np

from .. import mesh, signals
from . import plots, vtu
from ..errors import InputError
from ..progress import Progress
from ..project import CONFIG_FILE, END_MARKER, load_project
from .results import (DYN_FOLDER, OUTPUT_FOLDER, acc_path, femsig_path, max_model_path,
                      per_element, read_element_stresses, read_model, read_node_acceleration,
                      step_model_paths)

PICTURES = ("acceleration.png", "amplification.png", "spectra.png", "peaks.png")
PAGE = "report.md"
# The curves of the pictures as numbers, one column per record.
TABLES = ("amplification.csv", "spectra.csv")
GAL = 100.0  # cm/s2 in one m/s2


@dataclass
class NodeRecord:
    index: int  # from 0
    acc: np.ndarray  # x acceleration, gal

    @property
    def number(self):
        return self.index + 1


def check_results(project, node_indices):
    """The run has finished and left its result folders; otherwise a InputError that says
    which of these it is."""
    output = os.path.join(project.directory, OUTPUT_FOLDER)
    dyn = os.path.join(project.directory, DYN_FOLDER)
    if not os.path.isdir(output) and not os.path.isdir(dyn):
        raise InputError(f"no results in {project.directory}: it has neither {OUTPUT_FOLDER}/ "
                          f"nor {DYN_FOLDER}/ (has the analysis been run there?)")
    if not os.path.exists(os.path.join(project.run_dir, END_MARKER)):
        hint = ""
        if not os.path.exists(os.path.join(project.run_dir, CONFIG_FILE)):
            hint = (f" (if this is the project folder, give the run's working directory, which "
                    f"holds {CONFIG_FILE} and {END_MARKER})")
        raise InputError(f"the run in {project.run_dir} did not finish: there is no "
                          f"{END_MARKER}{hint}")
    for folder in (output, dyn):
        if not os.path.isdir(folder):
            raise InputError(f"missing folder: {folder}")
    steps = step_model_paths(project.directory)
    if not steps:
        raise InputError(f"missing file: {os.path.join(output, 'output0.inp')}")
    # Everything else that is read, looked for before anything is written.
    needed = [max_model_path(project.directory)]
    needed += [femsig_path(project.directory, e) for e in range(1, len(project.elements) + 1)]
    needed += [acc_path(project.directory, n + 1) for n in node_indices]
    for path in needed:
        if not os.path.isfile(path):
            raise InputError(f"missing file: {path}")
    return steps


def choose_nodes(project, numbers):
    """Node indices from 0 for node numbers from 1, or the default surface nodes."""
    count = len(project.nodes)
    if not numbers:
        return mesh.default_nodes(project.nodes, project.elements)
    for n in numbers:
        if not 1 <= n <= count:
            raise InputError(f"node {n} is not in the mesh: its nodes are numbered 1 to "
                              f"{count}")
    return [n - 1 for n in numbers]


def read_node_records(project, indices):
    records = []
    for i in indices:
        history = read_node_acceleration(project.directory, i + 1)
        if len(history) != project.wave.sample_count:
            raise InputError(f"dyn/acc{i + 1}.dat has {len(history)} steps, the wave "
                              f"{project.wave.sample_count}")
        records.append(NodeRecord(i, history[:, 1] * GAL))
    return records


def node_label(project, record):
    x, y = project.nodes[record.index]
    return f"node {record.number} (x = {x:g} m, y = {y:g} m)"


def make_report(run_dir, node_numbers=None, out_dir=None, stream=None):
    """Writes the pictures, report.md and the ParaView files; returns the output folder."""
    stream = stream if stream is not None else sys.stderr
    project = load_project(run_dir)
    indices = choose_nodes(project, node_numbers)
    steps = check_results(project, indices)
    out_dir = out_dir or os.path.join(project.directory, "report")
    os.makedirs(out_dir, exist_ok=True)

    wave = project.wave
    dt = wave.time_step
    input_gal = wave.acc * GAL
    records = read_node_records(project, indices)
    names = [f"node {r.number}" for r in records]

    where = "chosen nodes" if node_numbers else "ground surface"
    plots.acceleration(os.path.join(out_dir, PICTURES[0]),
                       f"Horizontal acceleration: input ({wave.name}) and {where}", wave.times,
                       [(f"input: base acceleration ({wave.name})", input_gal)]
                       + [(node_label(project, r), r.acc) for r in records])

    freqs, ratios = signals.amplification(input_gal, np.array([r.acc for r in records]), dt,
                                          wave.padded_length, wave.highest_line_frequency)
    plots.amplification(os.path.join(out_dir, PICTURES[1]), freqs, ratios, names,
                        wave.cutoff_frequency, signals.KONNO_OHMACHI_B)
    write_columns(os.path.join(out_dir, TABLES[0]), ["frequency (Hz)"] + names, freqs, *ratios)

    periods = signals.spectrum_periods()
    psa = signals.response_spectrum(np.array([input_gal] + [r.acc for r in records]), dt,
                                    periods)
    plots.spectra(os.path.join(out_dir, PICTURES[2]), periods, psa, ["input"] + names,
                  signals.DAMPING)
    write_columns(os.path.join(out_dir, TABLES[1]),
                  ["period (s)"] + [f"{n} PSA (gal)" for n in ["input"] + names], periods, *psa)

    n_elements = len(project.elements)
    femsig = read_element_stresses(project.directory, n_elements,
                                   Progress("reading dyn/femsig", n_elements, "files",
                                            every=500, stream=stream))
    maxima = read_model(max_model_path(project.directory))
    peak_shear = np.abs(femsig[:, :, 2]).max(axis=1)
    strain = ratio = None
    if project.only_four_node:
        strain = per_element(maxima.strain, n_elements, "max")[:, 3]
        ratio = per_element(read_model(steps[min(steps)]).stress, n_elements)[:, 6]
    plots.peaks(os.path.join(out_dir, PICTURES[3]), project.nodes, project.elements,
                np.abs(maxima.acceleration[:, 0]), peak_shear, strain, ratio, indices)

    pvd = vtu.export(project, out_dir, steps, femsig,
                     Progress("writing ParaView files", len(steps), "steps", stream=stream))

    summary = dict(project=project, steps=steps, records=records, input_gal=input_gal,
                   freqs=freqs, ratios=ratios, periods=periods, psa=psa, maxima=maxima,
                   peak_shear=peak_shear, strain=strain, ratio=ratio, pvd=pvd)
    write_page(os.path.join(out_dir, PAGE), out_dir, summary)
    return out_dir


def write_columns(path, header, *columns):
    np.savetxt(path, np.column_stack(columns), fmt="%.6g", delimiter=",",
               header=",".join(header), comments="")


def _peak(values):
    i = int(np.nanargmax(values))
    return i, values[i]


def write_page(path, out_dir, s):
    p, wave = s["project"], s["project"].wave
    c, f = p.constants, p.flags
    kinds = ", ".join(f"{sum(len(e.nodes) == k for e in p.elements)} of {k} nodes"
                      for k in p.node_counts)
    steps = s["steps"]
    path_kind = (f"{len(steps)} step files (output0.inp to output{max(steps)}.inp)"
                 if len(steps) > 1 else "single-step output (output0.inp only)")
    if f.given:
        iteration = (f"equivalent-linear, at most {c.iteration_limit} iterations to a "
                     f"tolerance of {c.tolerance:g}; the result files do not record how many "
                     "ran" if f.equivalent_linear else "linear, a single pass (no iteration)")
    else:
        iteration = "no Flag_VARNEK.inp: a single linear pass"
    pga_in = np.abs(s["input_gal"]).max()
    x0, y0 = p.nodes.min(axis=0)
    x1, y1 = p.nodes.max(axis=0)
    lines = [
        f"# Run report: {os.path.basename(p.directory) or p.directory}", "",
        f"Project folder `{p.directory}`.", "",
        "## Key figures", "",
        "| | |", "|---|---|",
        f"| Model | {len(p.nodes)} nodes, {len(p.elements)} elements ({kinds}), "
        f"{len({e.material for e in p.elements})} materials; x {x0:g} to {x1:g} m, "
        f"y {y0:g} to {y1:g} m |",
        f"| Wave | {wave.name}: {wave.sample_count} samples at {wave.time_step:g} s "
        f"({wave.sample_count * wave.time_step:g} s), padded to {wave.padded_length}; "
        f"PGA {pga_in:.1f} gal |",
        f"| Cut-off frequency | {wave.cutoff_frequency:g} Hz ({wave.line_count} frequency lines, "
        f"the highest at {wave.highest_line_frequency:.3f} Hz) |",
        f"| Analysis | {iteration}; effective strain ratio {c.effective_strain_ratio:g} |",
        f"| Output | {path_kind} |",
    ]
    i, v = _peak(np.abs(s["maxima"].acceleration[:, 0]))
    lines.append(f"| Largest peak acceleration | {v:.1f} gal at node {i + 1} "
                 f"(x = {p.nodes[i, 0]:g} m, y = {p.nodes[i, 1]:g} m) |")
    i, v = _peak(s["peak_shear"])
    lines.append(f"| Largest peak shear stress | {v:.1f} kPa in element {i + 1} |")
    if s["strain"] is not None:
        i, v = _peak(s["strain"])
        lines.append(f"| Peak shear strain | {100 * v:.4f} % in element {i + 1} |")
        i = int(np.nanargmin(s["ratio"]))
        lines.append(f"| Lowest final G/G0 | {s['ratio'][i]:.4f} in element {i + 1} |")
    else:
        lines.append("| Peak shear strain | not given per element: the strain lines of a mesh "
                     "with 6- and 8-node elements do not belong to the elements they name |")
    lines += ["", "## Chosen nodes", "",
              "| Node | x (m) | y (m) | PGA (gal) | PGA / input | Largest amplification "
              "| Largest PSA (5 %) |", "|---|---|---|---|---|---|---|"]
    for k, r in enumerate(s["records"]):
        pga = np.abs(r.acc).max()
        j, ratio = _peak(s["ratios"][k])
        m, psa = _peak(s["psa"][k + 1])
        x, y = p.nodes[r.index]
        lines.append(f"| {r.number} | {x:g} | {y:g} | {pga:.1f} | {pga / pga_in:.2f} | "
                     f"{ratio:.2f} at {s['freqs'][j]:.2f} Hz | {psa:.0f} gal at "
                     f"{s['periods'][m]:.2f} s |")
    m, psa = _peak(s["psa"][0])
    lines += ["", f"Input: largest PSA {psa:.0f} gal at {s['periods'][m]:.2f} s.", "",
              "## Pictures", ""]
    lines += [f"![{name[:-4]}]({name})" + "\n" for name in PICTURES]
    lines += [f"The curves as numbers: {', '.join(f'`{t}`' for t in TABLES)}.", ""]
    lines += ["## ParaView", "",
              f"Open `{os.path.relpath(s['pvd'], out_dir)}` (the steps in time) or "
              f"`{vtu.VTU_FOLDER}/{vtu.MAX_NAME}` (the maxima over the record).", ""]
    with open(path, "w", encoding="utf-8") as out:
        out.write("\n".join(lines))
