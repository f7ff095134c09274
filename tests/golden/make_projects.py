#!/usr/bin/env python3
"""Writes the reference projects whose outputs must stay byte-identical across refactorings.

    make_projects.py FOLDER

Each project lands in FOLDER/<name>/ with its own config_VARNEK.txt, ready to run in place.
"""
import math
import os
import sys


def write(folder, files):
    for name, text in files.items():
        path = os.path.join(folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", newline="") as f:
            f.write(text)


def mixed(folder, single_step):
    """One 4-node, one 8-node and one 6-node element sharing nodes; elastic gravel, table clay."""
    wave = "w,0.01,1\n" + "".join(f"{k * 0.01:g},{(k % 5) * 10.0 - 20.0:g}\n" for k in range(21))
    stress = "---- stress ----\n" + "".join(f"{i + 1} -1 -2 -1 0.1 0 0\n" for i in range(20))
    write(folder, {
        "config_VARNEK.txt": folder + "/\n",
        "Flag_VARNEK.inp": "20200101 500 1 %d\n" % single_step,
        "input_VARNEK.inp": "c.dat\nwave.csv\nnodes.dat\nelements.dat\nmat.dat\nbc.dat\n",
        "c.dat": "10\n0\n0.01\n0.05\n0.65\n3\n2\n",
        "wave.csv": wave,
        "nodes.dat": "0 0\n1 0\n1 1\n0 1\n2 0\n2 1\n1.5 0\n2 0.5\n1.5 1\n1 0.5\n1.5 1.5\n"
                     "1.25 1.25\n1.75 1.25\n",
        "elements.dat": "0 4 1 0 1 2 3\n1 8 1 1 4 5 2 6 7 8 9\n1 6 1 5 10 2 11 8 12\n",
        "mat.dat": "2\n5\n0.0019\n0.0019\n0\n80\n0.3\n0.03\n"
                   "2\n0.0017\n0.0017\n0\n30\n0.4\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n0.2\n2\n5\n15\n",
        "bc.dat": "0 2 0 0\n1 2 0 0\n4 2 0 0\n6 2 0 0\n",
        "output0.inp": stress,
    })


def sides(folder, side_treatment, equivalent_linear, single_step):
    """Three columns by four rows of 4-node elements with dashpots, side matrices and free-field
    columns; with transmitting sides, line matrices of i w times the side dashpot terms."""
    columns, rows, lines = 3, 4, 8

    def node(c, r):
        return r * columns + c

    files = {
        "config_VARNEK.txt": folder + "/\n",
        "Flag_VARNEK.inp": "20200101 500 %d %d\n" % (equivalent_linear, single_step),
        "input_VARNEK.inp": "constants.dat\nwave.csv\nnodes.dat\nelements.dat\nmaterials.dat\n"
                            "boundary.dat\n",
        "constants.dat": "12\n0\n0.01\n0.05\n0.65\n3\n%d\n" % side_treatment,
        "materials.dat": "2\n5\n0.0018\n0.0018\n0\n50\n0.4\n0.03\n"
                         "2\n0.0017\n0.0017\n0\n30\n0.4\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n0.2\n"
                         "2\n5\n15\n",
        "wave.csv": "wave,0,1\n",
        "output0.inp": "---- stress ----\n",
        "boundary.dat": "$VISCO 101 %d 1 0.5 0.01 0 5 10 5 %d %d %d\n"
                        % (node(1, 1), node(0, 1), node(1, 1), node(2, 1)),
        "output_ff/RIGHTEmatrix.dat": "%d %d 0.125 -0.5\n" % (2 * node(2, 3), 2 * node(2, 2)),
        "output_ff/LEFTEmatrix.dat": "%d %d 0.25 0\n\n" % (2 * node(0, 2), 2 * node(0, 2)),
        "nodes.dat": "", "elements.dat": "",
    }
    for k in range(64):
        files["wave.csv"] += "%.2f,%.6f\n" % (k * 0.01, 100.0 * math.sin(0.7 * k) * math.exp(-0.05 * k))
    for r in range(rows):
        for c in range(columns):
            files["nodes.dat"] += "%d %d\n" % (c, r)
            if r == 0:
                files["boundary.dat"] += "%d 2 0 0\n" % node(c, 0)
            if r + 1 == rows or c + 1 == columns:
                continue
            material = 1 if r >= 2 else 0
            files["elements.dat"] += "%d 4 1 %d %d %d %d\n" % (
                material, node(c, r), node(c + 1, r), node(c + 1, r + 1), node(c, r + 1))
            files["output0.inp"] += "1 -3 -5 -3 0 0 0\n" * 4
    for r in range(1, rows):
        for side in range(2):
            c = columns - 1 if side == 0 else 0
            n = node(c, r)
            edges = [node(c, r - 1), n, node(c, r + 1) if r + 1 < rows else -1]
            for d in range(2):
                coefficient = complex(0.3, 0.02) if d == 0 else complex(0.6, 0.0)
                code = 202 if d == 1 else 200 + side
                files["boundary.dat"] += "$VISCO %d %d %d %.17g %.17g 0 5 10 5 %d %d %d\n" % (
                    code, n, d, coefficient.real, coefficient.imag, *edges)
                for e in range(3):
                    if edges[e] == -1 or side_treatment != 0:
                        continue
                    for i in range(1, lines):
                        # Stiffer than the dashpots alone, so that the two treatments differ.
                        value = complex(0.1 * i, 2.0 * math.pi / 0.64 * i) * (
                            coefficient * (15.0 if e == 1 else 5.0) / 30.0)
                        name = "output_ff/%sEMat%d.dat" % ("RL"[side], i)
                        text = "%d %d %.17g %.17g\n" % (2 * n + d, 2 * edges[e] + d, value.real, value.imag)
                        if (i + r + e) % 3 == 0:
                            text += "%d %d 0 0\n" % (2 * n + d, 2 * edges[e] + 1 - d)
                        files[name] = files.get(name, "") + text
            motion = "%d\n" % n
            for i in range(lines):
                motion += "%.17g %.17g\n" % (1.0 + 0.1 * r - 0.05 * i, 0.02 * i * (side == 0))
            files["output_ff/%sFF_%d.dat" % ("RL"[side], r)] = motion
    write(folder, files)


def main():
    root = os.path.abspath(sys.argv[1])
    mixed(os.path.join(root, "mixed-steps"), 0)
    mixed(os.path.join(root, "mixed-single"), 1)
    for treatment in (0, 1, 2):
        sides(os.path.join(root, "sides%d-linear-steps" % treatment), treatment, 0, 0)
        sides(os.path.join(root, "sides%d-eqlinear-single" % treatment), treatment, 1, 1)


if __name__ == "__main__":
    main()
