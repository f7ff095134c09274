"""The run folder and what it says: the project the prefix of config_VARNEK.txt names, its file
list and constants, the preparation's notes (preparation/preparation.json), where the logs and
varnek-run's records lie, and the options the command line adds."""
import json
import os
import tomllib
from dataclasses import dataclass, field

from .. import project as prj
from ..errors import InputError

METHODS = ("gravity", "k0")
PREPARATION = "preparation"
PREPARATION_INFO = os.path.join(PREPARATION, "preparation.json")
PREPARATION_RECORD = os.path.join(PREPARATION, "record.txt")
SELFWEIGHT_FILE = "output0.inp"
FREEFIELD_FOLDER = "output_ff"
LOGS = "logs"
MODEL_ROLES = ("constants", "wave", "nodes", "elements", "materials", "boundary")


@dataclass
class Settings:
    """What the command line asks beyond the run folder."""
    selfweight_method: str = None  # None: preparation.json's, else gravity
    ranks: int = None  # the analysis under mpirun with this many ranks
    hostfile: str = None
    report: dict = field(default_factory=dict)  # report options given on the command line


@dataclass
class Run:
    run_dir: str  # absolute
    site: str = None  # absolute path of the site description, when the run starts from one
    settings: Settings = field(default_factory=Settings)

    def path(self, *parts):
        return os.path.join(self.run_dir, *parts)

    @property
    def logs(self):
        return self.path(LOGS)

    def log(self, stage):
        return os.path.join(self.logs, f"{stage}.log")

    def record(self, stage):
        return os.path.join(self.logs, f"{stage}.record")

    @property
    def prefix(self):
        return prj.read_prefix(self.run_dir)

    def in_project(self, name):
        """A project file's path as the programs open it (relative to RUNDIR, as the prefix
        makes it) and as this tool reads it."""
        relative = self.prefix + name
        return relative, os.path.join(self.run_dir, relative)

    def preparation(self):
        path = self.path(PREPARATION_INFO)
        try:
            with open(path, encoding="utf-8") as f:
                return json.load(f)
        except FileNotFoundError:
            return {}
        except (OSError, ValueError) as e:
            raise InputError(f"cannot read {path}: {e}") from None

    def file_list(self):
        """(role, path as opened) of the analysis' model files."""
        _, list_path = self.in_project(prj.LIST_FILE)
        slots = prj.read_file_list(list_path, self.prefix)
        if len(slots) < len(MODEL_ROLES):
            raise InputError(f"{list_path} names {len(slots)} files; the analysis reads "
                             f"{len(MODEL_ROLES)}: {', '.join(MODEL_ROLES)}")
        return list(zip(MODEL_ROLES, slots))

    def constants(self):
        return prj.read_constants(self.path(self.file_list()[0][1]))

    def treatment(self):
        return self.constants().side_boundary_type

    def selfweight_method(self):
        method = self.settings.selfweight_method or \
            self.preparation().get("selfweight_method") or "gravity"
        if method not in METHODS:
            raise InputError(f"{self.path(PREPARATION_INFO)}: selfweight_method {method!r} "
                             f"is not one of {', '.join(METHODS)}")
        return method

    def report_options(self):
        """The report's options: the site's [report] table (in a run folder, the one that
        preparation.json kept), with those of the command line over it."""
        table, where = {}, None
        if self.site:
            with open(self.site, "rb") as f:
                try:
                    table = tomllib.load(f).get("report", {})
                except tomllib.TOMLDecodeError as e:
                    raise InputError(f"{self.site}: {e}") from None
            where = f"{self.site} [report]"
        else:
            table = self.preparation().get("report", {}) or {}
            where = f"{self.path(PREPARATION_INFO)} report"
        if not isinstance(table, dict):
            raise InputError(f"{where}: not a table of report options")
        merged = {**table, **{k: v for k, v in self.settings.report.items() if v is not None}}
        return {name: _option_text(value) for name, value in merged.items()
                if value is not False}, where


def _option_text(value):
    if value is True:
        return "true"
    if isinstance(value, (list, tuple)):
        return ",".join(_option_text(v) for v in value)
    if isinstance(value, float) and value.is_integer():
        return str(int(value))
    return str(value)


def report_arguments(options):
    return [f"--{name.replace('_', '-')}" + ("" if value == "true" else f"={value}")
            for name, value in options.items()]
