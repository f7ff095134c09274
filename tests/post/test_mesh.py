import numpy as np
import pytest

from conftest import MIXED_ELEMENTS, MIXED_NODES
from varnek_report import mesh
from varnek_report.project import Element

# Natural coordinates of the program's element nodes, in its node order.
NATURAL = {
    4: [(-1, -1), (1, -1), (1, 1), (-1, 1)],
    8: [(-1, -1), (1, -1), (1, 1), (-1, 1), (0, -1), (1, 0), (0, 1), (-1, 0)],
    6: [(1, 0), (0, 1), (0, 0), (0, 0.5), (0.5, 0), (0.5, 0.5)],
}
# VTK's quadratic cells: corners first, then the mid-side node of each side (k, k + 1).
VTK_CORNERS = {"quad": 4, "quad8": 4, "triangle6": 3}


@pytest.mark.parametrize("count", [4, 6, 8])
def test_vtk_order_puts_each_mid_side_node_between_its_corners(count):
    kind = mesh.KINDS[count]
    points = np.array(NATURAL[count], dtype=float)[list(kind.vtk_order)]
    corners = VTK_CORNERS[kind.vtk_type]
    assert sorted(kind.vtk_order) == list(range(count))
    for k in range(count - corners):
        middle = 0.5 * (points[k] + points[(k + 1) % corners])
        np.testing.assert_allclose(points[corners + k], middle)
    # The corners go round the element, not across it.
    x, y = points[:corners].T
    assert abs(np.dot(x, np.roll(y, -1)) - np.dot(y, np.roll(x, -1))) > 0


@pytest.mark.parametrize("count", [4, 6, 8])
def test_outline_and_triangles_cover_the_element(count):
    kind = mesh.KINDS[count]
    points = np.array(NATURAL[count], dtype=float)

    def area(polygon):
        x, y = polygon.T
        return 0.5 * abs(np.dot(x, np.roll(y, -1)) - np.dot(y, np.roll(x, -1)))

    whole = area(points[list(kind.outline)])
    assert whole == pytest.approx({4: 4.0, 8: 4.0, 6: 0.5}[count])
    assert sum(area(points[list(t)]) for t in kind.triangles) == pytest.approx(whole)
    assert {n for t in kind.triangles for n in t} == set(range(count))


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


def test_cell_blocks_keep_the_element_order():
    nodes, elements = parse_mesh(MIXED_NODES, MIXED_ELEMENTS + "0 4 1 0 1 2 3\n")
    blocks = mesh.cell_blocks(elements)
    assert [(t, first, end) for t, first, end, _ in blocks] == \
        [("quad", 0, 1), ("quad8", 1, 2), ("triangle6", 2, 3), ("quad", 3, 4)]
    np.testing.assert_array_equal(blocks[2][3], [[5, 10, 2, 12, 11, 8]])
