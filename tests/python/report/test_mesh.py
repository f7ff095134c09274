import numpy as np
import pytest

from conftest import MIXED_ELEMENTS, MIXED_NODES
from varnek import mesh
from varnek.project import Element


def parse_mesh(nodes_text, elements_text):
    nodes = np.array([[float(v) for v in line.split()] for line in nodes_text.splitlines()])
    elements = []
    for line in elements_text.splitlines():
        fields = [int(v) for v in line.split()]
        elements.append(Element(fields[0], np.array(fields[3:3 + fields[1]])))
    return nodes, elements


# An L-shaped section: a low block on the left, a high one on the right, a riser between.
STEP_NODES = "0 0\n1 0\n2 0\n0 1\n1 1\n2 1\n1 2\n2 2\n"
STEP_ELEMENTS = "0 4 1 0 1 4 3\n0 4 1 1 2 5 4\n0 4 1 4 5 7 6\n"


@pytest.mark.parametrize("nodes_text, elements_text, surface, chosen", [
    (MIXED_NODES, MIXED_ELEMENTS, [2, 3, 5, 10, 11, 12], [3, 2, 5]),
    (STEP_NODES, STEP_ELEMENTS, [3, 4, 6, 7], [3, 6, 7]),
])
def test_surface_nodes_face_upwards_on_the_outside(nodes_text, elements_text, surface, chosen):
    nodes, elements = parse_mesh(nodes_text, elements_text)
    assert list(mesh.surface_nodes(nodes, elements)) == surface
    assert mesh.default_nodes(nodes, elements) == chosen
