// The matrices of the side columns that the dynamic analysis adds at the edges of the section:
// the constant matrix of the free-field shear traction on an edge, and, line by line, the
// energy-transmitting boundary (the dynamic stiffness of the layered soil beyond the edge, by
// the thin-layer method).
#pragma once

#include <string>
#include <vector>

#include "fem/thin_layer.hpp"
#include "freefield/column_analysis.hpp"
#include "linalg/small_matrix.hpp"
#include "model/analysis_data.hpp"

// One entry over the section's degrees of freedom (2p for x and 2p+1 for y of node p).
struct DofEntry {
    int row = 0;
    int column = 0;
    Complex value;
};

// The thin-layer column of an edge: its layers with their final moduli, their interpolation
// along y (linear for 2-node sides, quadratic for 3-node ones), and its base: rigid where the
// section's bottom edge node is fixed in x, else the section's base dashpots in x and y. A base
// on dashpots in x that is fixed in y, or complex base dashpots, cannot be represented and end
// the run as a model that cannot be analysed.
std::vector<ColumnLayer> ThinLayers(const SideAnalysis& side);
ColumnBase ThinLayerBase(const SideAnalysis& side);

// Rows y of node p, columns x of node q: n_x times the integral over the edge of
// N_p G* dN_q/dy (n_x = -1 left, +1 right), the entries of the layers' node pairs, ordered by
// row, then column.
std::vector<DofEntry> SideTractionMatrix(const SideAnalysis& side);

// Writes "REMat<i>.dat" and "LEMat<i>.dat" for every line i from 1 to frequencyCount-1 into
// folder, in parallel over lines: all entries of each edge's dynamic stiffness at the line's
// circular frequency, over the x and y degrees of freedom of its nodes (the bottom node left out
// on a rigid base). Returns the number of files.
int WriteLineMatrixFiles(const std::string& folder, const CAnalysisData& section,
                         const SideAnalysis& right, const SideAnalysis& left);
