// The system of one frequency line formed the plain way: by the arithmetic of the row-map
// matrix, one new matrix per operation, and a complete solve per line. The reference against
// which the fast loop is measured, and its fallback for a line it cannot map.
#pragma once

#include <vector>

#include "linalg/sparse_complex_matrix.hpp"
#include "model/analysis_data.hpp"
#include "solve/line_system_terms.hpp"

struct ChainLine {
    SparseComplexMatrix system;
    ComplexVector boundaryLoad;  // over the equations; empty without side treatment
};

// The dynamic matrix and boundary load of line i at circular frequency w.
ChainLine FormLineByChain(const LineSystemTerms& terms, const SparseComplexMatrix& stiffness,
                          int line, double w);

// Forms and solves line i the plain way and stores it in the node spectra. A failed solve ends
// the run.
void SolveLineByChain(const LineSystemTerms& terms, const SparseComplexMatrix& stiffness, int line,
                      CAnalysisData& analysis);
