"""The chain from a site description or a run folder to the report: each stage in order, run
when its result is missing or no longer matches what it was made from (or when asked), its
console kept in RUNDIR/logs/<stage>.log."""
import io
import os
import shutil
from contextlib import redirect_stderr

from ..errors import InputError, OutputError, VarnekError
from .. import project as prj
from . import records
from .process import Interrupted, Signals, run_logged
from .folder import Run, Settings, report_arguments
from .stages import STAGES, TABLE

TAIL_LINES = 6


def resolve(target, out=None, settings=None):
    """The run of a site description (RUNDIR: `out`, default the site's folder and stem) or of
    a run folder."""
    settings = settings or Settings()
    path = os.path.abspath(target)
    if os.path.isdir(path):
        if out:
            raise InputError("--out goes with a site description, not with a run folder")
        if not os.path.isfile(os.path.join(path, prj.CONFIG_FILE)):
            raise InputError(f"{target} has no {prj.CONFIG_FILE}: give a run folder (as "
                             "varnek-prepare makes it) or a site description SITE.toml")
        return Run(run_dir=path, settings=settings)
    if os.path.isfile(path):
        run_dir = os.path.abspath(out) if out else os.path.splitext(path)[0]
        return Run(run_dir=run_dir, site=path, settings=settings)
    raise InputError(f"no site description or run folder {target}")


def check(run, only=None, from_stage=None):
    """Faults of the request, found before any stage runs."""
    for given in (only, from_stage):
        if given is not None and given not in STAGES:
            raise InputError(f"unknown stage {given}: one of {', '.join(STAGES)}")
        if given == "prepare" and run.site is None:
            raise InputError("the prepare stage needs a site description: give SITE.toml")
    s = run.settings
    if s.ranks is not None and s.ranks < 1:
        raise InputError(f"--ranks {s.ranks}: at least 1")
    if s.hostfile and not os.path.isfile(s.hostfile):
        raise InputError(f"no host file {s.hostfile}")
    if s.hostfile and not s.ranks:
        raise InputError("--hostfile goes with --ranks N")
    check_report_options(run)


def check_report_options(run):
    """The report's options as varnek-report itself would take them, so that a wrong one stops
    the run before the analysis rather than after it."""
    try:
        from ..report.cli import parser
    except ImportError:
        return
    options, where = run.report_options()
    said = io.StringIO()
    try:
        with redirect_stderr(said):
            parser().parse_args([run.run_dir, *report_arguments(options)])
    except SystemExit:
        lines = said.getvalue().strip().splitlines() or ["not taken"]
        raise InputError(f"{where}: {lines[-1].split('error: ', 1)[-1]}") from None


def run_chain(run, view, force=False, from_stage=None, only=None):
    """Runs what is out of date (or asked for); returns the exit status."""
    try:
        check(run, only, from_stage)
        with Signals() as signals:
            return _stages(run, view, signals, force, from_stage, only)
    except Interrupted as stop:
        view.note(f"varnek-run: stopped by {stop}")
        return stop.status
    finally:
        view.close()


def _stages(run, view, signals, force, from_stage, only):
    names = [n for n in STAGES if run.site is not None or n != "prepare"]
    ran = 0
    for number, name in enumerate(names, start=1):
        stage = TABLE[name]
        if only is not None and name != only:
            continue
        if from_stage is not None and names.index(name) < names.index(from_stage):
            continue
        if not stage.applies(run):
            if only == name:
                raise InputError(f"the {name} stage has no part in this run (side treatment "
                                 f"{run.treatment()})")
            continue
        if force or only is not None or from_stage is not None:
            why = "asked for"
        else:
            changes = stage.changes(run)
            if not changes:
                view.note(f"{name}: up to date")
                continue
            why = "; ".join(changes[:3]) + (f" and {len(changes) - 3} more"
                                            if len(changes) > 3 else "")
        ran += 1
        status = _run_stage(run, stage, number, len(names), why, view, signals)
        if status is not None:
            return status
    if not ran:
        view.note("Everything is up to date.")
    return 0


def _run_stage(run, stage, number, count, why, view, signals):
    """Runs one stage; None when it succeeded, else the exit status to end with."""
    argv, env = stage.command(run)
    if stage.name == "prepare":
        # The preparation may replace the run folder; its log waits beside it until then.
        log = f"{run.run_dir}-prepare.log"
        cwd = os.path.dirname(run.site)
    else:
        _make_folder(run.logs)
        log = run.log(stage.name)
        cwd = run.run_dir
    kept = stage.record(run)
    if kept is not None:
        _remove(run.record(stage.name))  # until the stage ends complete
    totals = stage.totals(run)
    view.start(stage.name, number, count, why, log, totals)
    outcome = run_logged(stage.name, argv, cwd, log, view.segment, signals, env)
    view.end(stage.name, outcome.status, outcome.seconds)
    if stage.name == "prepare" and os.path.isdir(run.run_dir):
        _make_folder(run.logs)
        try:
            os.replace(log, run.log("prepare"))
        except OSError as e:
            raise OutputError(f"cannot move {log} to {run.log('prepare')}: {e.strerror}") from None
        log = run.log("prepare")
    if outcome.interrupted is not None and outcome.status != 0:
        for path in stage.leftovers(run):
            _remove(path)
        view.note(f"varnek-run: {stage.name} stopped by "
                  f"{Interrupted(outcome.interrupted)}; its console is in {log}")
        return 128 + outcome.interrupted
    status = stage.outcome(run, outcome.status)
    if status == 0 and kept is not None:
        records.write_record(run.record(stage.name), kept)
    if outcome.interrupted is not None:
        return 128 + outcome.interrupted
    if status == 0:
        return None
    if outcome.status == 0:
        what = (f"ended with status 0 but without {prj.END_MARKER}: a file it reads could "
                "not be opened")
    else:
        what = f"ended with status {status}"
    raise StageFailed(f"the {stage.name} stage {what} (console: {log})" + _tail(log), status)


class StageFailed(VarnekError):
    def __init__(self, message, status):
        super().__init__(message)
        self.status = status


def _tail(log):
    try:
        with open(log, encoding="utf-8", errors="replace") as f:
            lines = [line.rstrip() for line in f if line.strip() and not line.startswith("#")]
    except OSError:
        return ""
    return "".join(f"\n  | {line}" for line in lines[-TAIL_LINES:])


def _make_folder(path):
    try:
        os.makedirs(path, exist_ok=True)
    except OSError as e:
        raise OutputError(f"cannot make the folder {path}: {e.strerror}") from None


def _remove(path):
    try:
        if os.path.isdir(path) and not os.path.islink(path):
            shutil.rmtree(path)
        else:
            os.remove(path)
    except FileNotFoundError:
        pass
    except OSError as e:
        raise OutputError(f"cannot remove {path}: {e.strerror}") from None
