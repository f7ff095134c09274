// The row-map sparse complex matrix: one ordered map of complex values per row. Built entry by
// entry and combined by plain matrix arithmetic; an entry, once written, stays (even as zero).
#pragma once

#include <complex>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "base/run_stop.hpp"
#include "linalg/small_matrix.hpp"

class SparseComplexMatrix {
  public:
    std::vector<std::map<int32_t, Complex>> rows;
    std::vector<Complex> solution;     // the last solve's solution
    std::vector<int32_t> rowStart;     // compressed rows, 1-based, one closing entry
    std::vector<int32_t> columnIndex;  // 1-based
    std::vector<Complex> values;

    SparseComplexMatrix() = default;
    explicit SparseComplexMatrix(size_t rowCount) : rows(rowCount) {}

    size_t RowCount() const { return rows.size(); }
    size_t EntryCount() const;

    // Empties the solution and the compressed form and resizes to rowCount rows; entries in
    // rows that stay are kept.
    void reset(size_t rowCount);
    // Adds value to entry (i, j), creating it with that value when absent.
    void add(int32_t i, int32_t j, Complex value);

    // Builds the 1-based compressed rows from the maps.
    void Compress();
    // Solves A x = b in place (b holds n values); returns 0 on success or a negative code of the
    // solve's failure table. An empty matrix returns -1 without calling the solver.
    int solve(Complex* b);
};

SparseComplexMatrix operator*(Complex c, const SparseComplexMatrix& A);
SparseComplexMatrix operator*(double c, const SparseComplexMatrix& A);
SparseComplexMatrix operator+(const SparseComplexMatrix& A, const SparseComplexMatrix& B);
SparseComplexMatrix operator-(const SparseComplexMatrix& A, const SparseComplexMatrix& B);
// One entry per row: the sum over the row's entries of value * x[column], ascending columns.
ComplexVector operator*(const SparseComplexMatrix& A, const ComplexVector& x);

// Text of a failure code of the solve ("" outside -7..0).
const char* SolveErrorText(int code);
// The console text of a failed solve: the code's text, then "Solve Error : %d ..." and a line end.
std::string SolveFailureMessage(int code);
