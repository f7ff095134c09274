"""ParaView files: one .vtu per result model file and a .pvd collection of the steps in time.

Point fields: node (number from 1), displacement (m) and acceleration (gal, x absolute, y relative
to the base), as 3-vectors with z = 0 so that ParaView can warp and draw arrows with them.
Cell fields: element and material (numbers from 1); femsig_sx, femsig_sy, femsig_sxy, the element
stresses of dyn/femsig<e>.dat at the step's time (kPa, compression positive). Where the mesh is all
4-node elements, whose stress and strain lines belong to the element they name, also the element
means of the stress lines (tf/m2, compression negative), of G/G0 and of the strain lines. In the
maxima file the cell fields are the largest absolute values instead of means.
"""
import os
from xml.sax.saxutils import quoteattr

import meshio
import numpy as np

from .. import mesh
from ..errors import InputError
from .results import max_model_path, per_element, read_model

VTU_FOLDER = "vtu"
PVD_NAME = "varnek.pvd"
MAX_NAME = "output_max.vtu"
STRESS_FIELDS = ("stress_x", "stress_y", "stress_z", "stress_xy", "mean_stress",
                 "deviatoric_stress", "G_G0")
STRAIN_FIELDS = ("strain_x", "strain_y", "strain_z", "strain_xy", "volumetric_strain",
                 "deviatoric_strain")
FEMSIG_FIELDS = ("femsig_sx", "femsig_sy", "femsig_sxy")


def _vector3(xy):
    return np.column_stack([xy, np.zeros(len(xy))])


def model_fields(project, model, femsig, reduce):
    """Point and cell fields of one result model file, cell fields per element in element order;
    femsig is (elements, 3) for the same moment."""
    n_nodes, n_elements = len(project.nodes), len(project.elements)
    if len(model.nodes) != n_nodes:
        raise InputError(f"a result model holds {len(model.nodes)} nodes, the mesh "
                          f"{n_nodes}")
    points = {"node": np.arange(1, n_nodes + 1, dtype=np.int32),
              "displacement": _vector3(model.displacement),
              "acceleration": _vector3(model.acceleration)}
    cells = {"element": np.arange(1, n_elements + 1, dtype=np.int32),
             "material": np.array([e.material + 1 for e in project.elements], dtype=np.int32)}
    for k, name in enumerate(FEMSIG_FIELDS):
        cells[name] = np.asarray(femsig[:, k], dtype=float)
    if project.only_four_node:
        stress = per_element(model.stress, n_elements, reduce)
        strain = per_element(model.strain, n_elements, reduce)
        cells.update(zip(STRESS_FIELDS, stress.T))
        cells.update(zip(STRAIN_FIELDS, strain.T))
    return points, cells


class VtuWriter:
    def __init__(self, project, folder):
        self.folder = folder
        os.makedirs(folder, exist_ok=True)
        self.points = _vector3(project.nodes)
        self.blocks = mesh.cell_blocks(project.elements)
        self.cells = [(vtk_type, connectivity) for vtk_type, _, _, connectivity in self.blocks]

    def write(self, name, point_data, cell_data):
        split = {key: [np.asarray(values)[first:end] for _, first, end, _ in self.blocks]
                 for key, values in cell_data.items()}
        path = os.path.join(self.folder, name)
        meshio.Mesh(self.points, self.cells, point_data=point_data, cell_data=split).write(
            path, file_format="vtu")
        return path


def write_pvd(path, entries):
    """A ParaView collection of (time, file relative to the .pvd) entries."""
    lines = ['<?xml version="1.0"?>',
             '<VTKFile type="Collection" version="0.1" byte_order="LittleEndian">',
             "  <Collection>"]
    lines += [f'    <DataSet timestep="{t:.10g}" group="" part="0" file={quoteattr(f)}/>'
              for t, f in entries]
    lines += ["  </Collection>", "</VTKFile>", ""]
    with open(path, "w", encoding="utf-8") as f:
        f.write("\n".join(lines))


def export(project, out_dir, steps, femsig, progress=None):
    """Writes output<N>.vtu for every step file in steps ({step: path}), output_max.vtu and the
    collection varnek.pvd; femsig is (elements, samples, 3). Returns the .pvd path."""
    writer = VtuWriter(project, os.path.join(out_dir, VTU_FOLDER))
    dt = project.wave.time_step
    last = femsig.shape[1] - 1
    entries = []
    for step, path in steps.items():
        model = read_model(path)
        points, cells = model_fields(project, model, femsig[:, min(step, last)], "mean")
        name = f"output{step}.vtu"
        writer.write(name, points, cells)
        entries.append((step * dt, f"{VTU_FOLDER}/{name}"))
        if progress:
            progress.advance()
    peaks = np.abs(femsig).max(axis=1)
    points, cells = model_fields(project, read_model(max_model_path(project.directory)), peaks,
                                 "max")
    writer.write(MAX_NAME, points, cells)
    pvd = os.path.join(out_dir, PVD_NAME)
    write_pvd(pvd, entries)
    return pvd
