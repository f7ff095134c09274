#include "selfweight/cholesky_solve.hpp"

#include <cholmod.h>

#include <algorithm>

namespace {

// A CHOLMOD workspace and the objects made in it, all freed at the end of the solve.
class CholmodWork {
  public:
    CholmodWork() {
        cholmod_start(&common);
        common.print = 0;  // the caller reports a failure in its own words
    }
    ~CholmodWork() {
        cholmod_free_dense(&solution, &common);
        cholmod_free_dense(&rhs, &common);
        cholmod_free_factor(&factor, &common);
        cholmod_free_sparse(&matrix, &common);
        cholmod_finish(&common);
    }
    CholmodWork(const CholmodWork&) = delete;
    CholmodWork& operator=(const CholmodWork&) = delete;

    cholmod_common common;
    cholmod_sparse* matrix = nullptr;
    cholmod_factor* factor = nullptr;
    cholmod_dense* rhs = nullptr;
    cholmod_dense* solution = nullptr;
};

// The upper triangle in compressed columns: column i holds the entries (j, i), j <= i, which
// are the entries (i, j) of row i below the diagonal, already in ascending order of j.
cholmod_sparse* UpperTriangle(const SparseComplexMatrix& A, cholmod_common* common) {
    const size_t n = A.RowCount();
    size_t count = 0;
    for (size_t i = 0; i < n; ++i)
        for (const auto& [j, value] : A.rows[i]) count += static_cast<size_t>(j) <= i;
    cholmod_sparse* M = cholmod_allocate_sparse(n, n, count, 1, 1, 1, CHOLMOD_REAL, common);
    if (M == nullptr) return nullptr;
    auto* start = static_cast<int*>(M->p);
    auto* rowIndex = static_cast<int*>(M->i);
    auto* values = static_cast<double*>(M->x);
    int next = 0;
    for (size_t i = 0; i < n; ++i) {
        start[i] = next;
        for (const auto& [j, value] : A.rows[i]) {
            if (static_cast<size_t>(j) > i) break;
            rowIndex[next] = j;
            values[next] = value.real();
            ++next;
        }
    }
    start[n] = next;
    return M;
}

}  // namespace

CholeskySolve SolveSymmetricPositiveDefinite(const SparseComplexMatrix& A,
                                             const std::vector<double>& b,
                                             double smallestReciprocalCondition) {
    CholeskySolve result;
    const size_t n = A.RowCount();
    if (n == 0) {
        result.solved = true;
        result.reciprocalCondition = 1.0;
        return result;
    }
    CholmodWork work;
    cholmod_common* common = &work.common;
    work.matrix = UpperTriangle(A, common);
    if (work.matrix == nullptr) return result;
    work.factor = cholmod_analyze(work.matrix, common);
    if (work.factor == nullptr) return result;
    cholmod_factorize(work.matrix, work.factor, common);
    if (common->status == CHOLMOD_NOT_POSDEF) {
        // minor counts in the factor's ordering; Perm takes it back to the equation.
        const auto* perm = static_cast<const int*>(work.factor->Perm);
        const size_t minor = work.factor->minor;
        result.failedEquation = perm != nullptr && minor < n ? perm[minor] : -1;
        return result;
    }
    if (common->status < CHOLMOD_OK) return result;
    result.reciprocalCondition = cholmod_rcond(work.factor, common);
    if (!(result.reciprocalCondition >= smallestReciprocalCondition)) return result;

    work.rhs = cholmod_allocate_dense(n, 1, n, CHOLMOD_REAL, common);
    if (work.rhs == nullptr) return result;
    std::copy(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(n),
              static_cast<double*>(work.rhs->x));
    work.solution = cholmod_solve(CHOLMOD_A, work.factor, work.rhs, common);
    if (work.solution == nullptr) return result;
    const auto* x = static_cast<const double*>(work.solution->x);
    result.x.assign(x, x + n);
    result.solved = true;
    return result;
}
