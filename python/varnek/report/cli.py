"""varnek-report RUNDIR [--nodes N,...] [--out DIR]"""
import argparse
import os
import sys

from ..errors import InputError
from .report import PAGE, PICTURES, TABLES, make_report


def node_list(text):
    try:
        return [int(part) for part in text.split(",") if part.strip()]
    except ValueError:
        raise argparse.ArgumentTypeError(f"not a list of node numbers: {text}") from None


def parser():
    p = argparse.ArgumentParser(
        prog="varnek-report",
        description="Draws the results of a finished VARNEK run: acceleration histories, "
                    "amplification, response spectra, peak maps, a summary page and ParaView "
                    "files.")
    p.add_argument("run_dir", metavar="RUNDIR",
                   help="the working directory of the run (where config_VARNEK.txt and "
                        "a_end.dat lie)")
    p.add_argument("--nodes", type=node_list, metavar="N,...",
                   help="node numbers (from 1) to draw; default: the surface nodes at the left "
                        "edge, the middle and the right edge of the top of the mesh")
    p.add_argument("--out", metavar="DIR",
                   help="output folder (default: RUNDIR/<project>/report/)")
    return p


def main(argv=None):
    args = parser().parse_args(argv)
    try:
        out = make_report(args.run_dir, args.nodes, args.out)
    except InputError as e:
        print(f"varnek-report: {e}", file=sys.stderr)
        return 2
    print(f"Report in {out}:")
    for name in PICTURES + TABLES + (PAGE,):
        print(f"  {os.path.join(out, name)}")
    print(f"  {os.path.join(out, 'varnek.pvd')}  (ParaView)")
    return 0
