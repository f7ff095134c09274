"""ParaView files of the mixed 4/6/8-node mesh, read back and set against the text results."""
import io
import os
import xml.etree.ElementTree as ET

import meshio
import numpy as np
import pytest

from conftest import MIXED_DT, MIXED_STEPS
from varnek.report.report import make_report
from varnek.report.results import read_history, read_model

SECTION = "section"


@pytest.fixture(scope="module")
def reports(mixed_run, mixed_single_run, tmp_path_factory):
    out = {}
    for name, run in (("per-step", mixed_run), ("single-step", mixed_single_run)):
        out[name] = (run, make_report(run, out_dir=str(tmp_path_factory.mktemp(name)),
                                      stream=io.StringIO()))
    return out


def collection(report_dir):
    root = ET.parse(os.path.join(report_dir, "varnek.pvd")).getroot()
    return [(float(d.get("timestep")), d.get("file")) for d in root.iter("DataSet")]


@pytest.mark.parametrize("path, steps", [("per-step", MIXED_STEPS), ("single-step", 1)])
def test_one_file_per_existing_step_and_one_of_the_maxima(reports, path, steps):
    run, out = reports[path]
    entries = collection(out)
    assert entries == [(pytest.approx(k * MIXED_DT), f"vtu/output{k}.vtu") for k in range(steps)]
    files = sorted(os.listdir(os.path.join(out, "vtu")))
    assert files == sorted([f"output{k}.vtu" for k in range(steps)] + ["output_max.vtu"])


@pytest.mark.parametrize("path, step", [("per-step", 0), ("per-step", 13), ("single-step", 0),
                                        ("single-step", "max")])
def test_fields_match_the_text_results_of_the_same_step(reports, path, step):
    run, out = reports[path]
    project = os.path.join(run, SECTION)
    got = meshio.read(os.path.join(out, "vtu", f"output{'_max' if step == 'max' else step}.vtu"))
    assert got.points.shape == (13, 3)
    assert [(b.type, len(b.data)) for b in got.cells] == \
        [("quad", 1), ("quad8", 1), ("triangle6", 1)]
    text = read_model(os.path.join(project, "output",
                                   f"output{'_max' if step == 'max' else step}.inp"))
    np.testing.assert_allclose(got.point_data["displacement"][:, :2], text.displacement)
    np.testing.assert_allclose(got.point_data["acceleration"][:, :2], text.acceleration)
    np.testing.assert_array_equal(got.point_data["node"], np.arange(1, 14))
    np.testing.assert_array_equal(np.concatenate(got.cell_data["element"]), [1, 2, 3])
    for e in range(3):
        history = read_history(os.path.join(project, "dyn", f"femsig{e + 1}.dat"), 4, "")
        expected = np.abs(history[:, 1:]).max(axis=0) if step == "max" else history[step, 1:]
        got_sig = [np.concatenate(got.cell_data[n])[e] for n in
                   ("femsig_sx", "femsig_sy", "femsig_sxy")]
        np.testing.assert_allclose(got_sig, expected, rtol=1e-12)
    # The stress lines of such a mesh do not belong to the elements they name.
    assert "stress_x" not in got.cell_data and "strain_xy" not in got.cell_data


def test_quadratic_cells_have_their_mid_side_nodes_between_their_corners(reports):
    got = meshio.read(os.path.join(reports["per-step"][1], "vtu", "output0.vtu"))
    for block in got.cells:
        corners = {"quad": 4, "quad8": 4, "triangle6": 3}[block.type]
        for cell in block.data:
            p = got.points[cell]
            for k in range(len(cell) - corners):
                np.testing.assert_allclose(p[corners + k],
                                           0.5 * (p[k] + p[(k + 1) % corners]))
