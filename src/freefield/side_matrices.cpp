#include "freefield/side_matrices.hpp"

#include <algorithm>
#include <exception>

#include "base/run_stop.hpp"
#include "freefield/free_field_files.hpp"
#include "solve/line_vectors.hpp"

extern "C" void openblas_set_num_threads(int threads);

namespace {

std::string ColumnName(const SideAnalysis& side) {
    return std::string("the column of the ") + EdgeName(side.column.edge) + " edge";
}

// The section's degree of freedom at place d of the thin-layer column's order (2j: x, 2j+1: y of
// its node j from the top).
int SectionDof(const SideColumn& column, size_t d) {
    return 2 * column.nodes[d / 2] + static_cast<int>(d % 2);
}

ThinLayerColumn MakeThinLayerColumn(const SideAnalysis& side) {
    try {
        ThinLayerColumn thinLayers(ThinLayers(side), ThinLayerBase(side));
        if (thinLayers.NodeCount() != side.column.nodes.size())
            StopOnBadModel(ColumnName(side) + " has " + std::to_string(side.column.nodes.size()) +
                           " nodes, its thin layers " + std::to_string(thinLayers.NodeCount()));
        return thinLayers;
    } catch (const std::exception& fault) {
        StopOnBadModel(ColumnName(side) + ": " + fault.what());
    }
}

bool SameThinLayers(const SideAnalysis& right, const SideAnalysis& left) {
    const std::vector<ColumnLayer> a = ThinLayers(right), b = ThinLayers(left);
    const ColumnBase baseA = ThinLayerBase(right), baseB = ThinLayerBase(left);
    if (a.size() != b.size() || baseA.rigid != baseB.rigid || baseA.dashpotX != baseB.dashpotX ||
        baseA.dashpotY != baseB.dashpotY)
        return false;
    for (size_t l = 0; l < a.size(); ++l)
        if (a[l].thickness != b[l].thickness || a[l].shearModulus != b[l].shearModulus ||
            a[l].poissonRatio != b[l].poissonRatio || a[l].density != b[l].density ||
            a[l].interpolation != b[l].interpolation)
            return false;
    return true;
}

// The entries of one edge's boundary at one line, in the layout of the line matrix files.
void WriteBoundaryFile(const std::string& path, const SideColumn& column,
                       const ColumnMatrix& boundary) {
    std::vector<DofEntry> entries;
    entries.reserve(boundary.size * boundary.size);
    for (size_t r = 0; r < boundary.size; ++r)
        for (size_t c = 0; c < boundary.size; ++c)
            entries.push_back({SectionDof(column, r), SectionDof(column, c), boundary(r, c)});
    WriteMatrixFile(path, entries);
}

}  // namespace

std::vector<ColumnLayer> ThinLayers(const SideAnalysis& side) {
    std::vector<ColumnLayer> layers;
    const LayerInterpolation interpolation = side.column.NodesPerLayer() == 3
                                                 ? LayerInterpolation::Quadratic
                                                 : LayerInterpolation::Linear;
    for (const LayerState& state : side.response.layers) {
        ColumnLayer layer;
        layer.thickness = state.thickness;
        layer.shearModulus = state.shearModulus;
        layer.poissonRatio = state.poissonRatio;
        layer.density = state.density;
        layer.interpolation = interpolation;
        layers.push_back(layer);
    }
    return layers;
}

ColumnBase ThinLayerBase(const SideAnalysis& side) {
    const SideBase& base = side.response.base;
    ColumnBase thinBase;
    thinBase.rigid = base.rigid;
    if (base.rigid) return thinBase;
    if (base.fixedInY)
        StopOnBadModel(ColumnName(side) +
                       " stands on base dashpots in x but is fixed in y at its bottom node: the "
                       "transmitting boundary takes a base either rigid or on dashpots in both "
                       "directions");
    if (base.dashpotPerLength.imag() != 0.0 || base.dashpotPerLengthY.imag() != 0.0)
        StopOnBadModel(ColumnName(side) +
                       " stands on base dashpots of complex coefficient: the transmitting "
                       "boundary takes real ones");
    thinBase.dashpotX = base.dashpotPerLength.real();
    thinBase.dashpotY = base.dashpotPerLengthY.real();
    return thinBase;
}

std::vector<DofEntry> SideTractionMatrix(const SideAnalysis& side) {
    const ColumnSide which =
        side.column.edge == Edge::kRight ? ColumnSide::Right : ColumnSide::Left;
    const ColumnMatrix traction = FreeFieldTractionMatrix(ThinLayers(side), which);
    std::vector<DofEntry> entries;
    // Rows y and columns x: the odd and the even places of the column's order.
    for (size_t r = 1; r < traction.size; r += 2)
        for (size_t c = 0; c < traction.size; c += 2)
            if (traction(r, c) != Complex())
                entries.push_back(
                    {SectionDof(side.column, r), SectionDof(side.column, c), traction(r, c)});
    std::sort(entries.begin(), entries.end(), [](const DofEntry& a, const DofEntry& b) {
        return a.row != b.row ? a.row < b.row : a.column < b.column;
    });
    return entries;
}

int WriteLineMatrixFiles(const std::string& folder, const CAnalysisData& section,
                         const SideAnalysis& right, const SideAnalysis& left) {
    const ThinLayerColumn rightLayers = MakeThinLayerColumn(right);
    const ThinLayerColumn leftLayers = MakeThinLayerColumn(left);
    // Where the soil beyond both edges is the same, one eigen-solution a line serves both.
    const bool alike = SameThinLayers(right, left);
    const double duration = section.PaddedLength() * section.timeStep;
    const int lines = section.frequencyCount;
    // The eigenproblems (tens to a few hundred rows) are too small for threads of the BLAS,
    // which would only compete with the threads over lines.
    openblas_set_num_threads(1);
#pragma omp parallel for schedule(guided, 1)
    for (int i = 1; i < lines; ++i) {
        const double w = LineCircularFrequency(i, duration);
        try {
            const TransmittingBoundary beyondRight = rightLayers.Boundary(w);
            WriteBoundaryFile(folder + "REMat" + std::to_string(i) + ".dat", right.column,
                              beyondRight.right);
            WriteBoundaryFile(folder + "LEMat" + std::to_string(i) + ".dat", left.column,
                              alike ? beyondRight.left : leftLayers.Boundary(w).left);
        } catch (const std::exception& fault) {
            StopOnBadModel("the transmitting boundary at line " + std::to_string(i) + ": " +
                           fault.what());
        }
    }
    return 2 * std::max(lines - 1, 0);
}
