// Direct solution of complex sparse systems held as compressed rows (0-based, 64-bit indices).
// The ordering and symbolic factorisation of a pattern are done once and shared read-only by any
// number of threads; each thread factorises and solves its own values with a LineSolver.
// The factorisation is the multifrontal LU of UMFPACK with partial pivoting and single-threaded
// BLAS, so that a solution does not depend on the thread that computed it.
#pragma once

#include <complex>
#include <cstdint>
#include <vector>

#include "linalg/solver_memory.hpp"

// The pattern of a square sparse matrix: per row, its columns in ascending order.
struct CompressedPattern {
    int64_t size = 0;               // rows, equal to columns
    std::vector<int64_t> rowStart;  // size + 1 entries, from 0
    std::vector<int64_t> column;    // ascending within a row, no repeats

    int64_t EntryCount() const { return rowStart.empty() ? 0 : rowStart.back(); }
};

// Failure codes of a solve: 0 success, -1 invalid or non-finite input, -2 out of memory,
// -3 ordering failure, -4 singular matrix or inaccurate solution, -5 internal error.
enum SolveStatus : int {
    kSolveOk = 0,
    kSolveBadInput = -1,
    kSolveOutOfMemory = -2,
    kSolveOrderingFailed = -3,
    kSolveSingular = -4,
    kSolveInternal = -5,
};

// Relative backward error above which a solution counts as failed: the largest entry of the
// residual b - A x against |A| |x| + |b|, in maximum norms (row sums for A), with |re| + |im| as
// the modulus of an entry.
inline constexpr double kLargestBackwardError = 1e-6;

class SymbolicAnalysis {
  public:
    // Orders and analyses the pattern, which must outlive this object. A pattern of size 0 gives
    // status -1 without calling the solver.
    explicit SymbolicAnalysis(const CompressedPattern& pattern);
    ~SymbolicAnalysis();
    SymbolicAnalysis(const SymbolicAnalysis&) = delete;
    SymbolicAnalysis& operator=(const SymbolicAnalysis&) = delete;

    int Status() const { return status_; }
    const CompressedPattern& Pattern() const { return pattern_; }
    void* Handle() const { return symbolic_; }

  private:
    const CompressedPattern& pattern_;
    void* symbolic_ = nullptr;
    int status_ = kSolveOk;
};

// The numeric work of one thread: factorisation, solve and check, with workspace and the
// solver's large blocks kept between systems of the same pattern. Lives and dies in one thread.
class LineSolver {
  public:
    explicit LineSolver(const SymbolicAnalysis& analysis);
    ~LineSolver();
    LineSolver(const LineSolver&) = delete;
    LineSolver& operator=(const LineSolver&) = delete;

    // Factorises the matrix whose values follow the pattern's order. Returns a status.
    int Factorise(const std::complex<double>* values);
    // Solves A x = b with the last factorisation and checks that x is finite and the residual
    // small; the factorisation is released. Returns a status.
    int SolveFactorised(const std::complex<double>* b, std::complex<double>* x);
    // Both of the above.
    int Solve(const std::complex<double>* values, const std::complex<double>* b,
              std::complex<double>* x);

  private:
    void Release();

    SolverMemoryCache memory_;  // declared first: outlives the factorisation it serves
    const SymbolicAnalysis& analysis_;
    const std::complex<double>* values_ = nullptr;
    void* numeric_ = nullptr;
    std::vector<int64_t> wi_;
    std::vector<double> w_;
};

// Relative backward error of x as a solution of A x = b (see kLargestBackwardError).
double BackwardError(const CompressedPattern& pattern, const std::complex<double>* values,
                     const std::complex<double>* b, const std::complex<double>* x);
