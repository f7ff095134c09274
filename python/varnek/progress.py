"""Progress of long conversions: a line on standard error every so many items, with the count
and the time left at the rate so far."""
import sys
import time


class Progress:
    """Silent when there are fewer items than one line's worth."""

    def __init__(self, label, total, unit, every=100, stream=None, clock=time.monotonic):
        self.label, self.total, self.unit, self.every = label, total, unit, every
        self.stream = stream if stream is not None else sys.stderr
        self.clock = clock
        self.start = clock()
        self.done = 0

    def advance(self, count=1):
        before = self.done
        self.done += count
        if self.total < self.every:
            return
        if self.done // self.every > before // self.every or self.done == self.total:
            self._line()

    def _line(self):
        elapsed = self.clock() - self.start
        left = elapsed / self.done * (self.total - self.done) if self.done else 0.0
        width = 30
        filled = int(width * self.done / self.total) if self.total else width
        bar = "#" * filled + "." * (width - filled)
        self.stream.write(f"{self.label} [{bar}] {self.done}/{self.total} {self.unit}, "
                          f"{left:.0f} s left\n")
        self.stream.flush()
