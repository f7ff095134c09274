import os

import numpy as np
import pytest

from varnek.errors import InputError
from varnek.project import Constants, load_project, read_elements, read_wave

LIST = "// the model's files\r\nc.dat\r\nw.csv\r\nn.dat\r\ne.dat\r\n"
CONSTANTS = "15 cut-off\n0\n0.01 time step\n0.05\n0.65\n4\n2\n"
WAVE = "rec,0.01,1\n0,0\n0.01,10\n0.02,0\n"
NODES = "// x y\n0 0\n1 0\n1 1\nnot a node\n0 1\n"
ELEMENTS = "0 4 1 0 1 2 3\n"


def write(folder, files):
    os.makedirs(folder, exist_ok=True)
    for name, text in files.items():
        with open(os.path.join(folder, name), "w", newline="") as f:
            f.write(text)


def model_files():
    return {"input_VARNEK.inp": LIST, "c.dat": CONSTANTS, "w.csv": WAVE, "n.dat": NODES,
            "e.dat": ELEMENTS}


@pytest.mark.parametrize("config, project", [
    (lambda run: os.path.join(run, "p") + "/\n", "p"),  # an absolute prefix
    (lambda run: "p/\r\nignored\n", "p"),                # a relative one, with CR LF
    (lambda run: "", ""),                                # an empty file: the run folder
    (None, ""),                                          # no file: the run folder
])
def test_the_project_is_found_through_the_first_line_of_the_configuration(tmp_path, config,
                                                                          project):
    run = str(tmp_path)
    write(os.path.join(run, project), model_files())
    if config is not None:
        write(run, {"config_VARNEK.txt": config(run)})
    p = load_project(run)
    assert os.path.samefile(p.directory, os.path.join(run, project))
    # The comment line of the list takes no slot; the text line of the node file no node.
    assert p.wave.name == "rec" and p.constants.time_step == 0.01
    np.testing.assert_array_equal(p.nodes, [[0, 0], [1, 0], [1, 1], [0, 1]])
    assert p.only_four_node


def constants(cutoff, dt):
    return Constants(cutoff_frequency=cutoff, time_step=dt, tolerance=0.05,
                     effective_strain_ratio=0.65, iteration_limit=4, side_boundary_type=2)


@pytest.mark.parametrize("dt, t_end, cutoff, samples, padded, lines, effective", [
    (0.01, 10.24, 10.0, 1025, 2048, 205, 10.0),   # padded to the next power of two
    (0.01, 10.23, 10.0, 1024, 1024, 103, 10.0),   # already a power of two
    (0.01, 10.23, 80.0, 1024, 1024, 513, 50.0),   # the cut-off is held to the Nyquist frequency
    (0.01, 10.23, 0.0, 1024, 1024, 1, 0.0),       # only the line at 0 Hz
])
def test_wave_length_padding_and_frequency_lines(tmp_path, dt, t_end, cutoff, samples, padded,
                                                 lines, effective):
    path = tmp_path / "w.csv"
    path.write_text(f"rec,{dt},1\n0,0\n{t_end},100\n")
    wave = read_wave(str(path), constants(cutoff, dt))
    assert (wave.sample_count, wave.padded_length, wave.line_count) == (samples, padded, lines)
    assert wave.cutoff_frequency == effective


@pytest.mark.parametrize("header, samples, expected", [
    ("r,0.02,1", "0,0\n0.02,100\n0.04,-50\n", [0, 0.5, 1, 0.25, -0.5]),  # gal to m/s2, halved steps
    ("r,0.02,2", "0,0\n0.02,100\n0.04,-50\n", [0, 1, 2, 0.5, -1]),      # the amplitude factor
    ("r,0.02,x", "0,0\n0.02,100\n0.04,-50\n", [0, 0, 0, 0, 0]),         # no factor: no wave
    ("r,0,1", "// c\n0,0\n0.02 100\n0.04,-50\n", [0, -0.125, -0.25, -0.375, -0.5]),  # no comma
])
def test_wave_samples_are_scaled_and_resampled_on_the_time_step(tmp_path, header, samples,
                                                                expected):
    path = tmp_path / "w.csv"
    path.write_text(header + "\n" + samples)
    wave = read_wave(str(path), constants(20.0, 0.01))
    np.testing.assert_allclose(wave.acc, expected, atol=1e-12)


@pytest.mark.parametrize("text, nodes", [
    ("0 4 1 0 1 2 3\n", [[0, 1, 2, 3]]),
    ("0 4 1 0 1 2\n", [[0, 1, 2, 0]]),               # a short line leaves node 0
    ("0 3 1 0 1 2\n0 4 1 3 2 1 0\n", [[3, 2, 1, 0]]),  # no element of three nodes
    ("// c\n1 6 2 0 1 2 3 4 5\n", [[0, 1, 2, 3, 4, 5]]),
])
def test_elements(tmp_path, text, nodes):
    path = tmp_path / "e.dat"
    path.write_text(text)
    assert [list(e.nodes) for e in read_elements(str(path), 6)] == nodes


def test_an_element_on_a_node_beyond_the_list_is_refused(tmp_path):
    path = tmp_path / "e.dat"
    path.write_text("0 4 1 0 1 2 3\n0 4 1 0 1 2 9\n")
    with pytest.raises(InputError, match=r"e.dat:2: node 9 is not in the node list of 6"):
        read_elements(str(path), 6)
