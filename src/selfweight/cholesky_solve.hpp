// The one real symmetric solve of the static analysis: a sparse Cholesky factorisation
// (CHOLMOD, with its fill-reducing ordering), then the two triangular solves.
#pragma once

#include <cstdint>
#include <vector>

#include "linalg/sparse_complex_matrix.hpp"

struct CholeskySolve {
    bool solved = false;
    std::vector<double> x;
    // The equation at which the factorisation met a pivot that was not positive, or -1.
    int64_t failedEquation = -1;
    // The factor's rough estimate of the reciprocal condition number: the square of the ratio of
    // its smallest to its largest diagonal entry; 0 when the factorisation broke down.
    double reciprocalCondition = 0.0;
};

// Solves A x = b (b holds one value per row of A), A symmetric positive definite, given by the real
// parts of the entries on and below the diagonal of A's rows (the entries above it are not read).
// Not solved when the factorisation meets a pivot that is not positive, when the estimate of the
// reciprocal condition number falls below smallestReciprocalCondition (a singular matrix that
// rounding has left with tiny positive pivots), or when CHOLMOD fails (memory).
CholeskySolve SolveSymmetricPositiveDefinite(const SparseComplexMatrix& A,
                                             const std::vector<double>& b,
                                             double smallestReciprocalCondition);
