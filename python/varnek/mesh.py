"""Element kinds of the mesh: their node orders, outlines, sub-triangles and the ground surface.

Node order of the program's elements:
- 4 nodes: corners counter-clockwise in the natural coordinates, (-1,-1), (1,-1), (1,1), (-1,1);
- 8 nodes: the four corners as above, then the mid-side nodes of sides 1-2, 2-3, 3-4, 4-1;
- 6 nodes: corners 1, 2, 3, then the mid-side nodes of sides 2-3, 3-1, 1-2.
VTK wants the mid-side nodes of a quadratic triangle in the order of sides 1-2, 2-3, 3-1, so
the 6-node element is reordered for it; the others keep their order.
"""
from dataclasses import dataclass

import numpy as np


@dataclass(frozen=True)
class Kind:
    vtk_type: str  # meshio's name of the VTK cell type
    vtk_order: tuple  # VTK node k is the program's node vtk_order[k]
    outline: tuple  # the boundary of the element, corners and mid-side nodes in turn
    sides: tuple  # (corner, corner, mid-side or None) for each side
    triangles: tuple  # a split into triangles over all nodes, for colouring by node values


KINDS = {
    4: Kind("quad", (0, 1, 2, 3), (0, 1, 2, 3),
            ((0, 1, None), (1, 2, None), (2, 3, None), (3, 0, None)),
            ((0, 1, 2), (0, 2, 3))),
    6: Kind("triangle6", (0, 1, 2, 5, 3, 4), (0, 5, 1, 3, 2, 4),
            ((0, 1, 5), (1, 2, 3), (2, 0, 4)),
            ((0, 5, 4), (5, 1, 3), (4, 3, 2), (5, 3, 4))),
    8: Kind("quad8", tuple(range(8)), (0, 4, 1, 5, 2, 6, 3, 7),
            ((0, 1, 4), (1, 2, 5), (2, 3, 6), (3, 0, 7)),
            ((0, 4, 7), (1, 5, 4), (2, 6, 5), (3, 7, 6), (4, 5, 6), (4, 6, 7))),
}


def kind_of(element):
    return KINDS[len(element.nodes)]


def outlines(nodes, elements):
    """The polygon of each element, mid-side nodes included, as a list of (k, 2) arrays."""
    return [nodes[e.nodes[list(kind_of(e).outline)]] for e in elements]


def triangles(elements):
    """(t, 3) node indices splitting every element into triangles through all its nodes."""
    return np.array([e.nodes[list(t)] for e in elements for t in kind_of(e).triangles])


def cell_blocks(elements):
    """Consecutive runs of one element kind, in element order, as (vtk type, first, end,
    (count, nodes) connectivity in VTK's order); keeping the runs in order keeps cell i of the
    exported mesh element i + 1 of the run."""
    blocks, start = [], 0
    for i in range(1, len(elements) + 1):
        if i == len(elements) or len(elements[i].nodes) != len(elements[start].nodes):
            kind = kind_of(elements[start])
            order = list(kind.vtk_order)
            connectivity = np.array([e.nodes[order] for e in elements[start:i]])
            blocks.append((kind.vtk_type, start, i, connectivity))
            start = i
    return blocks


def surface_nodes(nodes, elements):
    """Indices of the nodes on the ground surface: on the sides that belong to one element only
    and face upwards (outward normal with an upward part)."""
    uses = {}
    for e in elements:
        centre = nodes[e.nodes].mean(axis=0)
        for a, b, mid in kind_of(e).sides:
            na, nb = e.nodes[a], e.nodes[b]
            key = (min(na, nb), max(na, nb))
            members = [na, nb] + ([e.nodes[mid]] if mid is not None else [])
            uses.setdefault(key, []).append((members, centre))
    found = set()
    for (na, nb), sharing in uses.items():
        if len(sharing) != 1:
            continue
        members, centre = sharing[0]
        d = nodes[nb] - nodes[na]
        normal = np.array([-d[1], d[0]])
        if normal @ (0.5 * (nodes[na] + nodes[nb]) - centre) < 0:
            normal = -normal
        if normal[1] > 1e-9 * np.hypot(*d):
            found.update(members)
    return np.array(sorted(found), dtype=np.int64)


def default_nodes(nodes, elements):
    """The surface nodes at the left edge, nearest the middle and at the right edge of the
    section's top, as indices from 0 (fewer when they coincide)."""
    top = surface_nodes(nodes, elements)
    if top.size == 0:
        top = np.nonzero(nodes[:, 1] == nodes[:, 1].max())[0]
    # Of nodes at the same x the highest is taken.
    x, y = nodes[top, 0], nodes[top, 1]
    left = top[np.lexsort((-y, x))[0]]
    right = top[np.lexsort((-y, -x))[0]]
    middle = top[np.lexsort((-y, np.abs(x - 0.5 * (x.min() + x.max()))))[0]]
    chosen = []
    for n in (left, middle, right):
        if n not in chosen:
            chosen.append(int(n))
    return chosen
