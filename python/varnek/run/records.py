"""Records of what a stage's result was computed from, and the check that they still hold.

A record is UTF-8 text; lines beginning with "#" are comments (the first names the program and
its version); every other line is one entry of fields separated by one space:

    option <name> <value>
    input <role> <sha256 of the file's bytes> <path as the program opened it>

The programs write theirs beside their results (output0.inp.record, output_ff/record.txt),
varnek-prepare writes preparation/record.txt, and varnek-run keeps its own for the analysis and
the report in logs/. A result is current when every input still has the digest its record
gives and every option has the value wanted now.
"""
import hashlib
import os
from dataclasses import dataclass, field

from ..errors import InputError, OutputError


@dataclass(frozen=True)
class Input:
    role: str
    digest: str
    path: str


@dataclass
class Record:
    comments: list = field(default_factory=list)  # without their "# "
    options: dict = field(default_factory=dict)
    inputs: list = field(default_factory=list)


def digest_file(path):
    sha = hashlib.sha256()
    with open(path, "rb") as f:
        for block in iter(lambda: f.read(1 << 20), b""):
            sha.update(block)
    return sha.hexdigest()


def parse_record(text, where):
    record = Record()
    for number, line in enumerate(text.splitlines(), start=1):
        line = line.rstrip("\r")
        if not line.strip():
            continue
        if line.startswith("#"):
            record.comments.append(line[1:].strip())
            continue
        kind, _, rest = line.partition(" ")
        if kind == "option":
            name, _, value = rest.partition(" ")
            record.options[name] = value
            continue
        fields = rest.split(" ", 2)
        if kind != "input" or len(fields) < 3:
            raise InputError(f"{where}:{number}: not an entry of a record: {line}")
        record.inputs.append(Input(*fields))
    return record


def read_record(path):
    """The record at path, or None where there is none."""
    try:
        with open(path, encoding="utf-8", errors="replace") as f:
            return parse_record(f.read(), path)
    except (FileNotFoundError, NotADirectoryError):
        return None
    except OSError as e:
        raise InputError(f"cannot read {path}: {e.strerror}") from None


def format_record(record):
    lines = [f"# {c}" for c in record.comments]
    lines += [f"option {name} {value}" for name, value in record.options.items()]
    lines += [f"input {i.role} {i.digest} {i.path}" for i in record.inputs]
    return "\n".join(lines) + "\n"


def write_record(path, record):
    """Written under a temporary name and renamed, so that a record is whole or absent."""
    partial = path + ".partial"
    try:
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(partial, "w", encoding="utf-8") as f:
            f.write(format_record(record))
        os.replace(partial, path)
    except OSError as e:
        raise OutputError(f"cannot write {path}: {e.strerror}") from None


def inputs_of(files, base):
    """Entries for (role, path) pairs, paths as given and read relative to base."""
    return [Input(role, digest_file(os.path.join(base, path)), path) for role, path in files]


def changes(record, base, options=None, digests=None):
    """What no longer holds of a record: one short text per changed input or option, empty when
    the record is current. Paths are read relative to base; `digests` maps a role to a function
    of the path that gives its digest where it is not that of the file's bytes."""
    found = []
    for name, value in (options or {}).items():
        was = record.options.get(name)
        if was != str(value):
            found.append(f"option {name} is {value}, was {was}" if was is not None
                         else f"option {name} {value} not in the record")
    for entry in record.inputs:
        path = os.path.join(base, entry.path)
        try:
            digest = (digests or {}).get(entry.role, digest_file)(path)
        except FileNotFoundError:
            found.append(f"{entry.role} {entry.path} is gone")
            continue
        except OSError as e:
            found.append(f"{entry.role} {entry.path} cannot be read ({e.strerror})")
            continue
        if digest != entry.digest:
            found.append(f"{entry.role} {entry.path} changed")
    return found
