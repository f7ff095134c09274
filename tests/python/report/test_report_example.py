"""The tool on the bundled example: every file, pictures of the stated size, and cell fields
that agree with the element stress histories."""
import os
import re
import time

import matplotlib.image
import meshio
import numpy as np
import pytest

from conftest import run_tool
from varnek.report.plots import SIZES
from varnek.report.report import PAGE, PICTURES, TABLES
from varnek.report.results import read_history

STEPS = 1560
TF_PER_M2 = 9.80665  # kPa


@pytest.fixture(scope="module")
def report(example_run, tmp_path_factory):
    out = str(tmp_path_factory.mktemp("example-report"))
    start = time.monotonic()
    status, stdout, stderr = run_tool(example_run, "--out", out)
    assert status == 0, stderr
    return dict(run=example_run, out=out, stdout=stdout, stderr=stderr,
                seconds=time.monotonic() - start)


def test_every_file_is_written(report):
    out = report["out"]
    for name in PICTURES + TABLES + (PAGE, "varnek.pvd"):
        assert os.path.getsize(os.path.join(out, name)) > 0, name
    vtus = set(os.listdir(os.path.join(out, "vtu")))
    assert vtus == {f"output{k}.vtu" for k in range(STEPS)} | {"output_max.vtu"}
    for name in PICTURES:
        assert os.path.join(out, name) in report["stdout"]


@pytest.mark.parametrize("name", PICTURES)
def test_each_picture_is_a_drawn_image_of_the_stated_size(report, name):
    image = matplotlib.image.imread(os.path.join(report["out"], name))
    assert image.shape[:2] == SIZES[name[:-4]][::-1]
    assert image[..., :3].std() > 0.05  # not a blank page


def test_the_conversion_reports_its_progress_every_hundred_steps(report):
    lines = [line for line in report["stderr"].splitlines() if "steps" in line]
    counts = [int(re.search(r"(\d+)/1560 steps, \d+ s left", line).group(1)) for line in lines]
    assert counts == list(range(100, STEPS, 100)) + [STEPS]


def test_page_names_the_surface_nodes_and_the_peak_strain(report):
    with open(os.path.join(report["out"], PAGE)) as f:
        page = f.read()
    rows = re.findall(r"^\| (\d+) \| ([\d.-]+) \| ([\d.-]+) \|", page, re.M)
    assert rows == [("321", "0", "0"), ("328", "14", "0"), ("336", "30", "0")]
    assert re.search(r"\| Peak shear strain \| \d+\.\d+ % in element \d+ \|", page)


@pytest.mark.parametrize("step", [0, 100, 1559])
def test_element_means_of_the_stress_lines_match_the_element_stress_files(report, step):
    got = meshio.read(os.path.join(report["out"], "vtu", f"output{step}.vtu"))
    cells = {name: np.concatenate(v) for name, v in got.cell_data.items()}
    for e in (0, 150, 299):
        history = read_history(os.path.join(report["run"], "column", "dyn",
                                            f"femsig{e + 1}.dat"), 4, "")
        sx, sy, sxy = history[step, 1:]
        # The model files give tf/m2 with compression negative, the stress files kPa with
        # compression positive.
        assert -TF_PER_M2 * cells["stress_x"][e] == pytest.approx(sx, abs=1e-3)
        assert -TF_PER_M2 * cells["stress_y"][e] == pytest.approx(sy, abs=1e-3)
        assert -TF_PER_M2 * cells["stress_xy"][e] == pytest.approx(sxy, abs=1e-3)
        assert cells["femsig_sxy"][e] == pytest.approx(sxy)
    assert 0 < cells["G_G0"].min() and cells["G_G0"].max() <= 1.0
