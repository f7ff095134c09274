"""The five stages of a run, in order, and for each: whether it belongs to this run, what has
changed since its result was made (empty: the result is current), the command that makes it,
and what an interrupted run of it may leave half-written.

Each result carries the record of what it was computed from:
- prepare: RUNDIR/preparation/record.txt (varnek-prepare), for the same site description;
- selfweight: <project>/output0.inp.record (varnek-selfweight), for the same --method;
- freefield: <project>/output_ff/record.txt (varnek-freefield), for the project's treatment;
- analysis: RUNDIR/logs/analysis.record (varnek-run, after a complete run: status 0 and
  a_end.dat): every project file the analysis reads, output0.inp, and output_ff/record.txt
  where the side treatment reads output_ff/; the ranks it ran on do not count;
- report: RUNDIR/logs/report.record (varnek-run): the report's options and the record of the
  analysis it drew.
"""
import datetime
import glob
import hashlib
import json
import os
import shutil
import sys
import tomllib
from dataclasses import dataclass

from .. import __version__
from .. import project as prj
from ..errors import InputError
from ..programs import ANALYSIS, FREEFIELD, SELFWEIGHT, find_program
from . import records
from .console import Totals
from .folder import FREEFIELD_FOLDER, LOGS, PREPARATION_RECORD, SELFWEIGHT_FILE, report_arguments

STAGES = ("prepare", "selfweight", "freefield", "analysis", "report")


def python_tool(name, *args):
    package_root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    env = dict(os.environ)
    env["PYTHONPATH"] = os.pathsep.join(p for p in (package_root, env.get("PYTHONPATH")) if p)
    return [sys.executable, "-m", "varnek.run.tool", name, *args], env


def site_digest(path):
    """The digest that varnek-prepare's record gives the site description: that of its
    content without the [report] table, as canonical JSON (varnek.prepare's own where it is
    there)."""
    try:
        from ..prepare import site_digest as prepared_digest
    except ImportError:
        prepared_digest = None
    if prepared_digest is not None:
        return prepared_digest(path)
    with open(path, "rb") as f:
        data = tomllib.load(f)
    data.pop("report", None)
    text = json.dumps(data, sort_keys=True, default=str, separators=(",", ":"))
    return hashlib.sha256(text.encode()).hexdigest()


# Each stage: applies(run) -> bool; changes(run) -> [str]; command(run) -> (argv, env);
# leftovers(run) -> [paths]; outcome(run, status) -> the status the stage counts as having;
# record(run) -> the record that varnek-run keeps of a complete run, taken before it starts
# (None for the stages whose programs write their own).


def _no_leftovers(run):
    return []


def _as_it_ended(run, status):
    return status


def _own_record(run):
    return None


def prepare_applies(run):
    return run.site is not None


def prepare_changes(run):
    record = records.read_record(run.path(PREPARATION_RECORD))
    if record is None:
        return ["not prepared yet"]
    prepared_from = run.preparation().get("site")
    if prepared_from and os.path.abspath(prepared_from) != run.site:
        return [f"prepared from {prepared_from}"]
    return records.changes(record, os.path.dirname(run.site), digests={"site": site_digest})


def prepare_command(run):
    return python_tool("prepare", run.site, "--out", run.run_dir)


def prepare_leftovers(run):
    """The folder varnek-prepare fills beside the run folder; it removes it itself unless it
    is killed."""
    parent, name = os.path.split(run.run_dir)
    return glob.glob(os.path.join(parent, f".{name}.partial-*"))


def selfweight_changes(run):
    relative, path = run.in_project(SELFWEIGHT_FILE)
    if not os.path.isfile(path):
        return [f"no {relative}"]
    record = records.read_record(path + ".record")
    if record is None:
        return [f"{relative} has no record of what it was made from"]
    return records.changes(record, run.run_dir, {"method": run.selfweight_method()})


def selfweight_command(run):
    return [find_program(SELFWEIGHT), "--method", run.selfweight_method()], None


def selfweight_leftovers(run):
    return glob.glob(run.in_project(SELFWEIGHT_FILE)[1] + "*.partial")


def freefield_applies(run):
    return run.treatment() in (0, 1)


def freefield_changes(run):
    relative, folder = run.in_project(FREEFIELD_FOLDER)
    record = records.read_record(os.path.join(folder, "record.txt"))
    if record is None:
        return [f"no {relative}/" if not os.path.isdir(folder)
                else f"{relative}/ has no record of what it was made from"]
    return records.changes(record, run.run_dir, {"treatment": run.treatment()})


def freefield_command(run):
    argv = [find_program(FREEFIELD)]
    verticals = run.report_options()[0].get("verticals")
    if verticals:
        argv.append(f"--verticals={verticals}")
    return argv, None


def freefield_leftovers(run):
    return [run.in_project(name)[1] for name in ("output_ff.partial", "output_1d.partial")]


def analysis_inputs(run):
    """(role, path as opened) of every file the analysis reads."""
    files = [("config", prj.CONFIG_FILE), ("flags", run.in_project(prj.FLAG_FILE)[0]),
             ("list", run.in_project(prj.LIST_FILE)[0])]
    files += run.file_list()
    files.append(("selfweight", run.in_project(SELFWEIGHT_FILE)[0]))
    if run.treatment() in (0, 1):
        files.append(("freefield", run.in_project(FREEFIELD_FOLDER + "/record.txt")[0]))
    return [(role, path) for role, path in files if os.path.isfile(run.path(path))]


def analysis_changes(run):
    if not os.path.isfile(run.path(prj.END_MARKER)):
        return [f"no complete run ({prj.END_MARKER} missing)"]
    record = records.read_record(run.record("analysis"))
    if record is None:
        return ["no record of a complete run"]
    found = records.changes(record, run.run_dir)
    recorded = {e.role for e in record.inputs}
    found += [f"{role} {path} is read now" for role, path in analysis_inputs(run)
              if role not in recorded]
    return found


def analysis_command(run):
    program = find_program(ANALYSIS)
    s = run.settings
    if not s.ranks:
        return [program], None
    mpirun = shutil.which("mpirun")
    if mpirun is None:
        raise InputError("--ranks needs mpirun: install openmpi-bin (and build with MPI)")
    argv = [mpirun, "-q", "-n", str(s.ranks), "--bind-to", "none"]
    if s.hostfile:
        argv += ["--hostfile", s.hostfile, "--map-by", "ppr:1:node"]
    elif s.ranks > (os.cpu_count() or 1):
        argv.append("--oversubscribe")
    if os.geteuid() == 0:
        argv.append("--allow-run-as-root")
    return argv + [program], None


def analysis_leftovers(run):
    return glob.glob(run.path("work_*.dat")) + [run.path(prj.END_MARKER)]


def analysis_outcome(run, status):
    """A complete run is status 0 with a_end.dat. Status 0 without the marker is a file the
    analysis could not open: an input fault."""
    if status == 0 and not os.path.isfile(run.path(prj.END_MARKER)):
        return 2
    return status


def analysis_record(run):
    # The start time makes each run's record its own, so that the report of an earlier run
    # counts as stale.
    return records.Record(comments=[f"varnek-run {__version__} analysis",
                                    f"started {_now('microseconds')}"],
                          inputs=records.inputs_of(analysis_inputs(run), run.run_dir))


def report_folder(run):
    out = run.report_options()[0].get("out")
    return run.path(out) if out else os.path.join(run.in_project("")[1], "report")


def report_changes(run):
    record = records.read_record(run.record("report"))
    if record is None:
        return ["no report yet"]
    if not os.path.isfile(os.path.join(report_folder(run), "report.md")):
        return ["report.md missing"]
    return records.changes(record, run.run_dir, run.report_options()[0]) + \
        _removed_options(record, run.report_options()[0])


def _removed_options(record, options):
    return [f"option {name} no longer given" for name in record.options if name not in options]


def report_command(run):
    return python_tool("report", run.run_dir, *report_arguments(run.report_options()[0]))


def report_record(run):
    record = records.Record(comments=[f"varnek-run {__version__} report"],
                            options=run.report_options()[0])
    if os.path.isfile(run.record("analysis")):
        record.inputs = records.inputs_of([("analysis", os.path.join(LOGS, "analysis.record"))],
                                          run.run_dir)
    return record


def _now(timespec="seconds"):
    return datetime.datetime.now().astimezone().isoformat(timespec=timespec)


def analysis_totals(run):
    """How far the counts of the analysis' console run, from its project; empty where the
    project cannot be read (the analysis then says why)."""
    try:
        p = prj.load_project(run.run_dir)
    except InputError:
        return Totals()
    return Totals(lines=max(0, p.wave.line_count - 1),
                  iteration_limit=p.constants.iteration_limit,
                  steps=1 if p.flags.single_step_output else p.wave.sample_count,
                  elements=len(p.elements), nodes=len(p.nodes))


def freefield_totals(run):
    t = analysis_totals(run)
    return Totals(lines=t.lines, iteration_limit=t.iteration_limit)


@dataclass(frozen=True)
class Stage:
    name: str
    applies: object
    changes: object
    command: object
    leftovers: object = _no_leftovers
    outcome: object = _as_it_ended
    record: object = _own_record
    totals: object = lambda run: Totals()


def _always(run):
    return True


TABLE = {
    "prepare": Stage("prepare", prepare_applies, prepare_changes, prepare_command,
                     prepare_leftovers),
    "selfweight": Stage("selfweight", _always, selfweight_changes, selfweight_command,
                        selfweight_leftovers),
    "freefield": Stage("freefield", freefield_applies, freefield_changes, freefield_command,
                       freefield_leftovers, totals=freefield_totals),
    "analysis": Stage("analysis", _always, analysis_changes, analysis_command,
                      analysis_leftovers, analysis_outcome, analysis_record, analysis_totals),
    "report": Stage("report", _always, report_changes, report_command, record=report_record),
}
