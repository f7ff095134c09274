"""One stage's process: started in a process group of its own, its console (standard output and
standard error through one pipe, so that their order holds) read as it comes, kept in the log
and handed to the display; Ctrl-C or SIGTERM to varnek-run is passed on to that group.

The log: "# stage", "# command", "# start" lines, then the console, each carriage-return
rewritten line as its last state, then "# end" and "# status".
"""
import codecs
import datetime
import os
import selectors
import shlex
import signal
import subprocess
import time
from dataclasses import dataclass

from ..errors import OutputError
from .console import ConsoleText

# A stage that has not ended this long after the signal was passed on is killed.
GRACE_SECONDS = 30.0
STOP_SIGNALS = (signal.SIGINT, signal.SIGTERM)


class Interrupted(Exception):
    """Ctrl-C or SIGTERM while no stage ran."""

    def __init__(self, signum):
        super().__init__(signal.Signals(signum).name)
        self.signum = signum

    @property
    def status(self):
        return 128 + self.signum


class Signals:
    """Catches SIGINT and SIGTERM for the whole run: with a stage running, passes the signal on
    to its process group (a second one kills the group); between stages, raises Interrupted."""

    def __init__(self):
        self.received = None
        self.received_at = None
        self.group = None
        self._saved = {}

    def __enter__(self):
        for signum in STOP_SIGNALS:
            # A signal ignored from the start (Ctrl-C for a job in the background of a script)
            # stays ignored, by the stages too.
            if signal.getsignal(signum) is not signal.SIG_IGN:
                self._saved[signum] = signal.signal(signum, self._handle)
        return self

    def __exit__(self, *exc):
        for signum, handler in self._saved.items():
            signal.signal(signum, handler)
        return False

    def _handle(self, signum, frame):
        first = self.received is None
        if first:
            self.received, self.received_at = signum, time.monotonic()
        if self.group is None:
            raise Interrupted(self.received)
        self.kill(signum if first else signal.SIGKILL)

    def kill(self, signum):
        try:
            os.killpg(self.group, signum)
        except (ProcessLookupError, PermissionError):
            pass

    @property
    def overdue(self):
        return self.received is not None and time.monotonic() - self.received_at > GRACE_SECONDS


@dataclass
class Outcome:
    status: int  # exit status, 128 + signal number for a process ended by a signal
    seconds: float
    interrupted: int = None  # the signal varnek-run received while the stage ran


def _now():
    return datetime.datetime.now().astimezone().isoformat(timespec="seconds")


def run_logged(stage, argv, cwd, log_path, on_segment, signals, env=None):
    """Runs argv in cwd, its console into log_path and, segment by segment, to on_segment(text,
    closed). Returns the Outcome; the log ends with the end time and the status."""
    try:
        log = open(log_path, "w", encoding="utf-8")
    except OSError as e:
        raise OutputError(f"cannot write {log_path}: {e.strerror}") from None
    started = time.monotonic()
    with log:
        log.write(f"# stage {stage}\n# command {shlex.join(argv)}\n# start {_now()}\n")
        log.flush()
        try:
            proc = subprocess.Popen(argv, cwd=cwd, stdin=subprocess.DEVNULL,
                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                    process_group=0, env=env)
        except OSError as e:
            log.write(f"cannot start {argv[0]}: {e.strerror}\n# end {_now()}\n# status 127\n")
            return Outcome(127, time.monotonic() - started)
        signals.group = proc.pid
        try:
            _pump(proc, log, on_segment, signals)
            code = proc.wait()
        finally:
            signals.group = None
            if proc.poll() is None:  # an error of our own: take the stage down with us
                os.killpg(proc.pid, signal.SIGKILL)
                proc.wait()
            proc.stdout.close()
        status = code if code >= 0 else 128 - code
        log.write(f"# end {_now()}\n# status {status}\n")
    return Outcome(status, time.monotonic() - started, signals.received)


def _pump(proc, log, on_segment, signals):
    text = ConsoleText()
    decoder = codecs.getincrementaldecoder("utf-8")(errors="replace")
    fd = proc.stdout.fileno()
    with selectors.DefaultSelector() as selector:
        selector.register(fd, selectors.EVENT_READ)
        while True:
            if signals.overdue:
                signals.kill(signal.SIGKILL)
            if not selector.select(timeout=0.5):
                continue
            chunk = os.read(fd, 1 << 16)
            segments, lines = text.feed(decoder.decode(chunk, final=not chunk))
            for line in lines:
                log.write(line + "\n")
            if not chunk:
                for line in text.close():
                    log.write(line + "\n")
                break
            log.flush()
            for segment, closed in segments:
                on_segment(segment, closed)
