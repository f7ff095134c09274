"""Line scanning as the program does it: leading numbers of a line, the rest ignored."""
import re

from .errors import InputError

# A decimal number as the C library's scan reads it, infinities and NaN included.
_FLOAT = (r"[-+]?(?:(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?"
          r"|(?i:inf(?:inity)?|nan))")
_LEADING_FLOAT = re.compile(r"\s*(" + _FLOAT + ")")
_TWO_FLOATS = re.compile(r"\s*(" + _FLOAT + r")\s*(" + _FLOAT + ")")
_COMMA_FLOATS = re.compile(r"\s*(" + _FLOAT + r"),\s*(" + _FLOAT + ")")
_INT = re.compile(r"\s*([-+]?\d+)")


def leading_float(text):
    """The number a line starts with (white space before it is free), or None."""
    m = _LEADING_FLOAT.match(text)
    return float(m.group(1)) if m else None


def two_floats(line):
    """"x y": two numbers apart by optional white space, or None."""
    m = _TWO_FLOATS.match(line)
    return (float(m.group(1)), float(m.group(2))) if m else None


def comma_floats(line):
    """"t,a": two numbers joined by a comma right behind the first, or None."""
    m = _COMMA_FLOATS.match(line)
    return (float(m.group(1)), float(m.group(2))) if m else None


def leading_ints(line, most):
    """Up to `most` whole numbers from the start of the line; the scan stops at the first field
    that is not one."""
    values, pos = [], 0
    while len(values) < most:
        m = _INT.match(line, pos)
        if not m:
            break
        values.append(int(m.group(1)))
        pos = m.end()
    return values


def read_text(path, what):
    """The whole text of a file, or a InputError naming it. Bytes that are not UTF-8 (comments
    in a Japanese code page) pass through untouched."""
    try:
        with open(path, encoding="utf-8", errors="surrogateescape", newline="") as f:
            return f.read()
    except FileNotFoundError:
        raise InputError(f"missing file: {path} ({what})") from None
    except IsADirectoryError:
        raise InputError(f"{path} is a folder, not the {what}") from None
    except OSError as e:
        raise InputError(f"cannot read {path} ({what}): {e.strerror}") from None


def text_lines(text):
    """Lines split at line feeds with one trailing carriage return removed; a final line feed
    opens no further line."""
    lines = text.split("\n")
    if lines and lines[-1] == "":
        lines.pop()
    return [line[:-1] if line.endswith("\r") else line for line in lines]


def data_lines(text):
    """The lines of an input file that are not "//" comments, with their 1-based numbers."""
    return [(i, line) for i, line in enumerate(text_lines(text), 1) if not line.startswith("//")]
