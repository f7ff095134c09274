// Constant complex dashpot matrices from the viscous boundary conditions.
#pragma once

#include "run/analysis_data.hpp"
#include "run/sparse_complex_matrix.hpp"

// Clears matrix, sizes it to the equations and adds term2..term4 of every viscous condition of
// the group: sideGroup false takes codes 100 to 199, true codes from 200.
void AssembleViscousMatrix(SparseComplexMatrix& matrix, const CAnalysisData& analysis, bool sideGroup);
