// Constant complex dashpot matrices from the viscous boundary conditions.
#pragma once

#include "linalg/sparse_complex_matrix.hpp"
#include "model/analysis_data.hpp"

// Clears matrix, sizes it to the equations and adds term2..term4 of every viscous condition of
// the group: sideGroup false takes codes 100 to 199, true codes from 200. Each term couples the
// row node's degree of freedom in the condition's direction (0: x, any other value: y) to the
// same direction of its edge node; terms on a fixed degree of freedom are dropped. A node outside
// the node list ends the run as bad input.
void AssembleViscousMatrix(SparseComplexMatrix& matrix, const CAnalysisData& analysis,
                           bool sideGroup);
