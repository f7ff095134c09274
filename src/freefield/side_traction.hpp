// The constant side matrix: the shear traction that the free field exerts on a vertical edge of
// the section, as the matrix that turns the free-field x motion of the edge nodes into y forces
// on them.
#pragma once

#include <vector>

#include "freefield/column_analysis.hpp"
#include "freefield/side_column.hpp"
#include "linalg/small_matrix.hpp"

// One entry over the section's degrees of freedom (2p for x and 2p+1 for y of node p).
struct DofEntry {
    int row = 0;
    int column = 0;
    Complex value;
};

// Rows y of node p, columns x of node q: n_x times the integral over the edge of
// N_p G* dN_q/dy, with N the interpolation of each layer's side along y (linear or quadratic),
// G* the layer's final shear modulus and n_x the outward normal (-1 left, +1 right). One entry
// per pair of nodes of a common layer, sums taken over the layers; ordered by row, then column.
std::vector<DofEntry> SideTractionMatrix(const CAnalysisData& section, const SideColumn& column,
                                         const std::vector<LayerState>& layers);
