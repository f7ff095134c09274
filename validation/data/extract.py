#!/usr/bin/python3
"""Extracts the published benchmark data kept here from their sources (see README.md).

    extract.py PYSTRATA STRATA

PYSTRATA and STRATA are checkouts (work trees) of github.com/arkottke/pystrata and
github.com/arkottke/strata. Run once by hand; the validation reads only the files written here.
"""
import gzip
import io
import json
import os
import re
import sys
import zipfile
import xml.etree.ElementTree as ET

import numpy as np

HERE = os.path.dirname(os.path.abspath(__file__))
SHEET = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
# The Strata example's motions kept here: both at 0.02 s, the shortest of its ten.
STRATA_MOTIONS = {"NORTHR/LV3090.AT2": "LV3090", "NORTHR/VAS090.AT2": "VAS090"}


def xlsx_columns(path, sheet_name):
    """{column letter: list of numbers} of one sheet of a workbook, header rows left out."""
    book = zipfile.ZipFile(path)
    root = ET.fromstring(book.read("xl/workbook.xml"))
    rels = ET.fromstring(book.read("xl/_rels/workbook.xml.rels"))
    targets = {r.get("Id"): r.get("Target") for r in rels}
    rid = next(s.get("{http://schemas.openxmlformats.org/officeDocument/2006/relationships}id")
               for s in root.iter(SHEET + "sheet") if s.get("name") == sheet_name)
    columns = {}
    for cell in ET.fromstring(book.read("xl/" + targets[rid])).iter(SHEET + "c"):
        value = cell.find(SHEET + "v")
        if value is None or cell.get("t") == "s":
            continue  # a header (shared string)
        columns.setdefault(re.match(r"[A-Z]+", cell.get("r")).group(), []).append(
            float(value.text))
    return columns


def write_table(name, header, columns, fmt="%.7g"):
    path = os.path.join(HERE, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as raw:
        # gzip without a time stamp, so that extracting again gives the same bytes
        packed = gzip.GzipFile(fileobj=raw, mode="wb", mtime=0) if name.endswith(".gz") else raw
        with io.TextIOWrapper(packed, encoding="utf-8") as f:
            np.savetxt(f, np.column_stack(columns), fmt=fmt, delimiter=",", header=header)


def deepsoil(pystrata):
    folder = "deepsoil-example-2a"
    with open(os.path.join(pystrata, "tests", "data", "ChiChi.txt")) as f:
        count, step = f.readline().split()
        motion = np.loadtxt(f)
    assert len(motion) == int(count)
    write_table(f"{folder}/input.csv.gz", f"time (s), acceleration (g); time step {step} s",
                [motion[:, 0], motion[:, 1]])
    c = xlsx_columns(os.path.join(pystrata, "tests", "data", "ds-example-2a-le.xlsx"), "Layer1")
    write_table(f"{folder}/surface.csv.gz", "time (s), surface acceleration (g), shear strain "
                "at 10 m (%), shear stress over vertical effective stress at 10 m",
                [c["A"], c["B"], c["C"], c["D"]])
    write_table(f"{folder}/spectrum.csv", "period (s), 5 % damped pseudo-acceleration at the "
                "surface (g)", [c["G"], c["H"]])


def nrattle(pystrata):
    """The crustal profile of pyStrata's NRATTLE check (400 layers over a half-space, no
    damping) and NRATTLE's surface amplification over the half-space's outcrop."""
    folder = "nrattle"
    layers, halfspace = [], None
    with open(os.path.join(pystrata, "tests", "data", "nrattle.ctl")) as f:
        lines = [line.split() for line in f if not line.startswith("!")]
    for i, fields in enumerate(lines):
        if len(fields) == 6:
            layers.append([float(v) for v in fields[1:5]])  # km, km/s, g/cm3, 1/Q
        elif layers and halfspace is None and len(fields) == 2:
            halfspace = [float(v) for v in fields]
    layers = np.array(layers)
    assert len(layers) == 400 and not layers[:, 3].any()
    write_table(f"{folder}/profile.csv", "thickness (m), Vs (m/s), density (t/m3), from the "
                f"surface down; half-space Vs {1000 * halfspace[0]:g} m/s, density "
                f"{halfspace[1]:g} t/m3; no damping", [1000 * layers[:, 0], 1000 * layers[:, 1],
                                                      layers[:, 2]])
    amps = np.loadtxt(os.path.join(pystrata, "tests", "data",
                                   "test_nrattle_02mar12.nrattle_amps4plot.out"), skiprows=19,
                      usecols=(0, 2))
    write_table(f"{folder}/amplification.csv", "frequency (Hz), surface over half-space "
                "outcrop amplitude", [amps[:, 0], amps[:, 1]])


def strata(strata_root):
    folder = "strata-example-2"
    with open(os.path.join(strata_root, "example", "example-02.json")) as f:
        project = json.load(f)
    profile = project["siteProfile"]
    site = {
        "layers": [{"depth": l["depth"], "thickness": l["thickness"], "vs": l["avg"],
                    "soil": l["soilType"]} for l in profile["soilLayers"]],
        "bedrock": {"depth": profile["bedrock"]["depth"], "vs": profile["bedrock"]["avg"],
                    "unit_weight": profile["bedrock"]["untWt"],
                    "damping_percent": profile["bedrock"]["avgDamping"]},
        "soils": [{"name": s["name"], "unit_weight": s["untWt"],
                   "strain_percent": s["modulusModel"]["strain"],
                   "modulus_ratio": s["modulusModel"]["average"],
                   "damping_percent": s["dampingModel"]["average"]}
                  for s in profile["soilTypeCatalog"]],
        "max_frequency": profile["maxFreq"], "wave_fraction": profile["waveFraction"],
        "calculator": project["calculator"],
    }
    os.makedirs(os.path.join(HERE, folder), exist_ok=True)
    with open(os.path.join(HERE, folder, "site.json"), "w") as f:
        json.dump(site, f, indent=1)
    catalog = project["outputCatalog"]
    motions = project["motionLibrary"]["motions"]
    profiles = {p["className"]: p["data"][0] for p in catalog["profilesOutputCatalog"]
                if p["enabled"]}
    spectra = catalog["spectraOutputCatalog"][0]["data"][0]
    depth, columns, names = [0.0], [], []
    while depth[-1] < profile["bedrock"]["depth"]:  # the output depths of the example
        depth.append(depth[-1] + 0.3048 * (1 if depth[-1] < 20 else 2 if depth[-1] < 60 else 5))
    periods = np.logspace(-2, 1, len(spectra[0]))
    spectrum_columns = [periods]
    for i, m in enumerate(motions):
        name = next((v for k, v in STRATA_MOTIONS.items() if m["fileName"].endswith(k)), None)
        if name is None:
            continue
        write_table(f"{folder}/{name}.csv", f"acceleration (g) every {m['timeStep']} s: "
                    f"{m['description'].strip()}, scaled by {m['scale']}", [m["accel"]])
        columns += [profiles["MaxAccelProfileOutput"][i], profiles["MaxStrainProfileOutput"][i]]
        names += [f"{name} peak acceleration (g)", f"{name} peak shear strain (%)"]
        spectrum_columns.append(spectra[i])
    write_table(f"{folder}/profiles.csv", "depth (m), " + ", ".join(names),
                [np.array(depth)] + columns)
    write_table(f"{folder}/spectra.csv", "period (s), 5 % damped pseudo-acceleration at the "
                "surface (g): " + ", ".join(STRATA_MOTIONS.values()), spectrum_columns)


if __name__ == "__main__":
    deepsoil(sys.argv[1])
    nrattle(sys.argv[1])
    strata(sys.argv[2])
