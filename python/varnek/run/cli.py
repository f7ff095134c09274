"""varnek-run SITE.toml | RUNDIR [--force | --from STAGE | --only STAGE] [--ranks N
[--hostfile FILE]] [--selfweight-method gravity|k0] [--nodes N,...] [--verticals X,...]
[--columns N] [--out RUNDIR]"""
import argparse
import os
import sys

from .. import __version__
from ..errors import VarnekError
from .chain import resolve, run_chain
from .display import make_view
from .folder import METHODS, Settings
from .stages import STAGES


def _numbers(kind):
    def parse(text):
        try:
            return [kind(part) for part in text.split(",") if part.strip()]
        except ValueError:
            raise argparse.ArgumentTypeError(f"not a list of numbers: {text}") from None
    return parse


def parser():
    p = argparse.ArgumentParser(
        prog="varnek-run",
        description="Runs the chain of a VARNEK analysis: preparation of a site description "
                    "(varnek-prepare), self-weight (varnek-selfweight), free field "
                    "(varnek-freefield, for side treatments 0 and 1), the dynamic analysis "
                    "(varnek) and the report (varnek-report). A stage runs when its result is "
                    "missing or was made from other inputs or options; each stage's console is "
                    "kept in RUNDIR/logs/<stage>.log.",
        epilog=f"Stages: {', '.join(STAGES)}. Exit status: 0 done, 2 a fault of the input, 1 "
               "a result that cannot be written, a failed stage's own status, 130 or 143 "
               "when stopped by Ctrl-C or SIGTERM.")
    p.add_argument("target", metavar="SITE.toml|RUNDIR",
                   help="a site description, prepared into RUNDIR, or a run folder holding "
                        "config_VARNEK.txt")
    p.add_argument("--out", metavar="RUNDIR",
                   help="run folder of a site description (default: the site's folder and "
                        "stem, valley.toml -> valley/)")
    which = p.add_mutually_exclusive_group()
    which.add_argument("--force", action="store_true", help="run every stage")
    which.add_argument("--from", dest="from_stage", choices=STAGES, metavar="STAGE",
                       help="run this stage and every one after it")
    which.add_argument("--only", choices=STAGES, metavar="STAGE", help="run this stage alone")
    p.add_argument("--ranks", type=int, metavar="N",
                   help="run the dynamic analysis under mpirun with N ranks (the other stages "
                        "stay single processes)")
    p.add_argument("--hostfile", metavar="FILE",
                   help="mpirun's host file, one rank a machine (with --ranks)")
    p.add_argument("--selfweight-method", choices=METHODS,
                   help="method of the self-weight analysis (default: the preparation's, "
                        "else gravity)")
    report = p.add_argument_group("report options (over those of the site's [report] table)")
    report.add_argument("--nodes", type=_numbers(int), metavar="N,...",
                        help="node numbers (from 1) to draw")
    report.add_argument("--verticals", type=_numbers(float), metavar="X,...",
                        help="x (m) of the depth profiles (--verticals=-20,0 when the first is "
                             "negative); the free field computes their columns too")
    report.add_argument("--columns", type=int, metavar="N",
                        help="most one-dimensional columns along the surface")
    p.add_argument("--version", action="version", version=f"varnek-run {__version__}")
    return p


def main(argv=None):
    args = parser().parse_args(argv)
    settings = Settings(selfweight_method=args.selfweight_method, ranks=args.ranks,
                        hostfile=os.path.abspath(args.hostfile) if args.hostfile else None,
                        report={"nodes": args.nodes, "verticals": args.verticals,
                                "columns": args.columns})
    try:
        run = resolve(args.target, args.out, settings)
        return run_chain(run, make_view(), force=args.force, from_stage=args.from_stage,
                         only=args.only)
    except VarnekError as e:
        print(f"varnek-run: {e}", file=sys.stderr)
        return e.status
