"""A Python tool as a stage of varnek-run: `python3 -m varnek.run.tool prepare|report ARGS`.

SIGTERM, like Ctrl-C, unwinds the tool (so that its temporary folders are taken away), and the
tool ends with status 128 + the signal's number.
"""
import importlib
import signal
import sys

TOOLS = {"prepare": "varnek.prepare.cli", "report": "varnek.report.cli"}


class _Stopped(BaseException):
    def __init__(self, signum):
        super().__init__(signum)
        self.signum = signum


def _stop(signum, frame):
    raise _Stopped(signum)


def main(argv):
    if not argv or argv[0] not in TOOLS:
        print(f"usage: python3 -m varnek.run.tool {'|'.join(TOOLS)} ARGS", file=sys.stderr)
        return 2
    for signum in (signal.SIGINT, signal.SIGTERM):
        signal.signal(signum, _stop)
    try:
        try:
            cli = importlib.import_module(TOOLS[argv[0]])
        except ImportError as e:
            print(f"varnek-{argv[0]} cannot be loaded: {e}", file=sys.stderr)
            return 2
        status = cli.main(argv[1:])
    except _Stopped as stop:
        return 128 + stop.signum
    return status if isinstance(status, int) else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
