"""What varnek-run shows while the stages run: on a terminal a live panel drawn with rich (the
stage, the iteration against its limit with the last ERROR against TOL, a bar of the frequency
lines with their rate and the time left, a bar of the output steps); elsewhere plain lines, a
progress line at most every `interval` seconds."""
import sys
import time

from .console import Progress, format_seconds


class PlainView:
    def __init__(self, stream=None, clock=time.monotonic, interval=10.0):
        self.stream = stream if stream is not None else sys.stdout
        self.clock, self.interval = clock, interval
        self.stage = None
        self.progress = None
        self.last_line = None  # clock of the last progress line shown

    def _say(self, text):
        self.stream.write(text + "\n")
        self.stream.flush()

    def note(self, text):
        self._say(text)

    def start(self, stage, number, count, why, log, totals):
        self.stage = stage
        self.progress = Progress(totals)
        self.last_line = self.clock()
        self._say(f"[{number}/{count}] {stage}: {why}; console in {log}")

    def segment(self, text, closed):
        p = self.progress
        now = self.clock()
        before = p.iteration
        p.take(text, closed, now)
        if p.changed == "error":
            limit = p.totals.iteration_limit
            self._say(f"  {self.stage}: iteration {before - 1}" + (f" of {limit}" if limit else "")
                      + f": ERROR {p.error:.6g} against TOL {p.tolerance:.6g}")
        elif p.changed == "column":
            self._say(f"  {self.stage}: {p.column} column")
        elif p.changed == "phase":
            self._say(f"  {self.stage}: {p.phase_text()}")
            self.last_line = now
        elif p.changed in ("line", "count") and now - self.last_line >= self.interval:
            self._say(f"  {self.stage}: " +
                      (p.lines_text(now) if p.changed == "line" else p.phase_text()))
            self.last_line = now

    def end(self, stage, status, seconds):
        self._say(f"  {stage}: " + ("done" if status == 0 else f"ended with status {status}")
                  + f" in {format_seconds(seconds)}")

    def close(self):
        pass


class RichView:
    """The same on a terminal, redrawn a few times a second."""

    def __init__(self):
        from rich.console import Console
        self.console = Console()
        self.live = None
        self.stage = None
        self.progress = None
        self.started = None

    def note(self, text):
        self.console.print(text, markup=False, highlight=False)

    def start(self, stage, number, count, why, log, totals):
        from rich.live import Live
        self.stage, self.number, self.count = stage, number, count
        self.progress = Progress(totals)
        self.started = time.monotonic()
        self.console.print(f"[bold]{number}/{count} {stage}[/bold]: {why}", highlight=False)
        self.live = Live(self, console=self.console, refresh_per_second=4, transient=True)
        self.live.start()

    def segment(self, text, closed):
        p = self.progress
        before = p.iteration
        p.take(text, closed, time.monotonic())
        if p.changed == "error":
            limit = p.totals.iteration_limit
            self.console.print(f"  iteration {before - 1}" + (f" of {limit}" if limit else "")
                               + f": ERROR {p.error:.6g} against TOL {p.tolerance:.6g}",
                               highlight=False)
        elif p.changed == "column":
            self.console.print(f"  {p.column} column", highlight=False)

    def __rich__(self):
        from rich.console import Group
        from rich.progress_bar import ProgressBar
        from rich.table import Table
        from rich.text import Text
        now = time.monotonic()
        p = self.progress
        grid = Table.grid(padding=(0, 1))
        grid.add_row(Text(f"{self.number}/{self.count} {self.stage}", style="bold"),
                     Text(format_seconds(now - self.started), style="dim"))
        rows = [grid]
        if p.phase is None and (p.lines or p.error is not None or p.column):
            rows.append(Text("  " + p.iteration_text()))
        if p.phase is None and p.lines:
            bar = Table.grid(padding=(0, 1))
            bar.add_row(Text("  "), ProgressBar(total=p.totals.lines or None,
                                                completed=p.lines, width=30),
                        Text(p.lines_text(now), no_wrap=True, overflow="ellipsis"))
            rows.append(bar)
        if p.phase is not None:
            bar = Table.grid(padding=(0, 1))
            cells = [Text("  ")]
            if p.count is not None and p.count_total:
                cells.append(ProgressBar(total=p.count_total, completed=p.count, width=30))
            cells.append(Text(p.phase_text(), no_wrap=True, overflow="ellipsis"))
            bar.add_row(*cells)
            rows.append(bar)
        return Group(*rows)

    def end(self, stage, status, seconds):
        if self.live is not None:
            self.live.stop()
            self.live = None
        mark = "[green]done[/green]" if status == 0 else f"[red]ended with status {status}[/red]"
        self.console.print(f"  {stage}: {mark} in {format_seconds(seconds)}", highlight=False)

    def close(self):
        if self.live is not None:
            self.live.stop()
            self.live = None


def make_view(stream=None):
    stream = stream if stream is not None else sys.stdout
    return RichView() if stream.isatty() else PlainView(stream)
