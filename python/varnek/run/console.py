"""The console of a stage as it streams, and the progress it tells.

The programs rewrite their progress line with carriage returns: the frequency loop writes
"\\rCalculate <f> Hz : ωs = <w> FFTSpc <a>" on standard error once per line it starts, with no
line end; the equivalent-linear iteration writes "等価線形化計算 <n> 回目" after the pass over
the lines and then, when some element is strain-dependent, "ERROR = <e>\\tTOL=<t>"; the output
stages write what they are at ("変位計算中", "時刻歴ファイル出力中(Disp and Acc)\\t<s>step",
...). The free-field program shows the same iteration once per column, under a heading
"Free-field column, <side> edge ...".

`ConsoleText` cuts the stream into segments (each carriage return or line end closes one) and
into lines (each kept as its last non-empty segment, as a terminal would leave it);
`Progress` turns the segments into the state that the display shows.
"""
import math
import re
from dataclasses import dataclass

_SPLIT = re.compile(r"(\r|\n)")


class ConsoleText:
    def __init__(self):
        self.pending = ""  # the segment not yet closed
        self.current = ""  # the last non-empty segment of the line not yet ended

    def feed(self, text):
        """(segments, lines): the segments closed by this text, with the open one last as
        (text, False) where there is one, and the lines it ends."""
        parts = _SPLIT.split(self.pending + text)
        self.pending = parts.pop()
        segments, lines = [], []
        for segment, end in zip(parts[0::2], parts[1::2]):
            if segment:
                segments.append((segment, True))
                self.current = segment
            if end == "\n":
                lines.append(self.current)
                self.current = ""
        if self.pending:
            segments.append((self.pending, False))
        return segments, lines

    def close(self):
        """The line left open at the end of the stream, if any."""
        last = self.pending or self.current
        self.pending = self.current = ""
        return [last] if last else []


_LINE = re.compile(r"^Calculate\s+(\S+)\s+Hz")
_ITERATION = re.compile(r"等価線形化計算\s*(\d+)\s*回目")
_ERROR = re.compile(r"ERROR\s*=\s*(\S+)\s+TOL\s*=\s*(\S+)")
_COLUMN = re.compile(r"^Free-field column, (\w+) edge")
# The Python tools' progress line (varnek.progress): "<label> [###...] <done>/<total> <unit>, ..."
_TOOL = re.compile(r"^(.+?) \[[#.]*\] (\d+)/(\d+) (\S+),")
# Output stages: the console text, what the display calls it, and which total its count has.
_OUTPUT = [
    (re.compile(r"^変位計算中"), "output: displacement histories", None),
    (re.compile(r"^応答加速度計算中"), "output: acceleration histories", None),
    (re.compile(r"^\s*応力ひずみ計算中(?:\s*\[\s*(\d+)\s*/\s*\d+\s*\])?"),
     "output: stress and strain histories", "elements"),
    (re.compile(r"^時刻歴ファイル出力中\(Disp and Acc\)\s*(\d+)step"),
     "output: step files, displacements and accelerations", "steps"),
    (re.compile(r"^時刻歴ファイル出力中\((Stress|Strain) (\d+)/(\d+)\)\s*(\d+)step"),
     "output: step files, {0}, batch {1}/{2}", "steps"),
    (re.compile(r"^時刻歴ファイル出力中\s*(\d+)step"), "output: step files", "steps"),
    (re.compile(r"^最大値分布出力中"), "output: maxima", None),
    (re.compile(r"^要素応力データファイル出力中\s*(\d+)要素"), "output: element stress histories",
     "elements"),
    (re.compile(r"^節点加速度データファイル出力中\s*(\d+)節点"), "output: node acceleration histories",
     "nodes"),
]


@dataclass
class Totals:
    """What the counts of a stage run up to, from its project (None where unknown)."""
    lines: int = None  # frequency lines solved in a pass
    iteration_limit: int = None
    steps: int = None
    elements: int = None
    nodes: int = None


@dataclass
class Progress:
    totals: Totals
    column: str = None  # the free-field column under way
    iteration: int = 1  # the pass under way, from 1
    error: float = None  # ERROR of the last iteration
    tolerance: float = None
    lines: int = 0  # frequency lines started in this pass
    pass_start: float = None  # clock at the first line of the pass
    phase: str = None  # output stage under way
    count: int = None  # its count so far
    count_total: int = None
    changed: str = None  # what the last segment moved: "line", "iteration", "error", "phase"

    def take(self, segment, closed, now):
        """Updates from one segment of the console; an open segment only names a phase."""
        self.changed = None
        if closed:
            if _LINE.match(segment):
                if self.lines == 0:
                    self.pass_start = now
                self.lines += 1
                self.phase = None
                self.changed = "line"
                return
            m = _ITERATION.search(segment)
            if m:
                self.iteration = int(m.group(1)) + 1
                self.lines, self.pass_start = 0, None
                self.changed = "iteration"
                return
            m = _ERROR.search(segment)
            if m:
                self.error, self.tolerance = _number(m.group(1)), _number(m.group(2))
                self.changed = "error"
                return
            m = _COLUMN.match(segment)
            if m:
                self.column = m.group(1)
                self.iteration, self.error, self.tolerance = 1, None, None
                self.lines, self.pass_start = 0, None
                self.changed = "column"
                return
        m = _TOOL.match(segment)
        if m:
            label = f"{m.group(1)} ({m.group(4)})"
            self.changed = "phase" if label != self.phase else "count"
            self.phase, self.count, self.count_total = label, int(m.group(2)), int(m.group(3))
            return
        for pattern, label, total in _OUTPUT:
            m = pattern.match(segment)
            if not m:
                continue
            groups = m.groups()
            if label.count("{"):
                kind = "stresses" if groups[0] == "Stress" else "strains"
                label = label.format(kind, *groups[1:3])
                groups = groups[3:]
            # The console counts the step, node or element it is at from 0.
            count = int(groups[0]) + 1 if groups and groups[0] is not None else None
            new = label != self.phase
            self.phase, self.count = label, count
            self.count_total = getattr(self.totals, total) if total else None
            self.changed = "phase" if new else "count"
            return

    @property
    def iterating(self):
        return self.phase is None and (self.lines > 0 or self.error is not None)

    def rate(self, now):
        """Frequency lines a second in this pass, or None before there is a measure."""
        if self.pass_start is None or self.lines < 2 or not now > self.pass_start:
            return None
        return (self.lines - 1) / (now - self.pass_start)

    def seconds_left(self, now):
        rate = self.rate(now)
        if rate is None or not self.totals.lines:
            return None
        return max(0.0, self.totals.lines - self.lines) / rate

    def iteration_text(self):
        limit, done = self.totals.iteration_limit, self.iteration - 1
        last = f"ERROR {_short(self.error)} against TOL {_short(self.tolerance)}"
        if self.error is not None and self.tolerance is not None and self.tolerance > self.error:
            text = f"converged in {done} iteration{'s' if done > 1 else ''}: " + \
                last.replace("against", "below")
        elif self.error is not None and limit and done >= limit:
            text = f"iteration limit {limit} reached: {last}"
        else:
            text = f"iteration {self.iteration}" + (f" of {limit}" if limit else "")
            if self.error is not None:
                text += f", last {last}"
        return f"{self.column} column, {text}" if self.column else text

    def lines_text(self, now):
        total = self.totals.lines
        text = f"frequency lines {self.lines}" + (f"/{total}" if total else "")
        rate = self.rate(now)
        if rate is not None:
            text += f", {rate:.1f} lines/s"
        left = self.seconds_left(now)
        if left is not None:
            text += f", {format_seconds(left)} left"
        return text

    def phase_text(self):
        text = self.phase
        if self.count is not None:
            text += f" {self.count}" + (f"/{self.count_total}" if self.count_total else "")
        return text


def _number(text):
    try:
        return float(text)
    except ValueError:
        return math.nan


def _short(value):
    return "?" if value is None else f"{value:.4g}"


def format_seconds(seconds):
    seconds = int(round(seconds))
    if seconds < 60:
        return f"{seconds} s"
    minutes, seconds = divmod(seconds, 60)
    if minutes < 60:
        return f"{minutes} min {seconds:02d} s"
    hours, minutes = divmod(minutes, 60)
    return f"{hours} h {minutes:02d} min"
