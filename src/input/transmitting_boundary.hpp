// Energy-transmitting side boundaries: the constant matrices and the matrices of each frequency
// line that the free-field analysis leaves in its folder.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "linalg/sparse_complex_matrix.hpp"
#include "model/analysis_data.hpp"

// Adds the entries of one constant matrix file; a file that cannot be opened prints the path and
// "Ematrix:Reading error", waits for one character and ends the run with status 0.
void ReadFixedEMatrix(SparseComplexMatrix& matrix, const std::string& path,
                      const CAnalysisData& analysis);

// Adds the entries of "REMat<i>.dat" and then "LEMat<i>.dat" of folder; a missing file prints the
// path and "Ematrix<i>:Reading error", waits for one character and ends the run with status 0.
void ReadFrequencyEMatrix(SparseComplexMatrix& matrix, int i, const std::string& folder,
                          const CAnalysisData& analysis);

// The frequency matrices of lines 1 .. frequencyCount-1 for a whole run. Knows the union of
// their patterns from the start; keeps the parsed lines in memory when they fit the budget and
// reads them again otherwise. Line() may be called from many threads at once.
//
// The constructor reads every file once (in parallel over lines), so that a missing or bad file
// ends the run there, before any line is solved, with the text of the lowest such line. Of the
// lines it reads it keeps only those that keeps() accepts (all without it): the lines a process
// will solve. The store keeps a reference to analysis, which must outlive it.
class FrequencyEMatrixStore {
  public:
    FrequencyEMatrixStore(const std::string& folder, const CAnalysisData& analysis,
                          uint64_t memoryBudgetBytes,
                          const std::function<bool(int)>& keeps = nullptr);
    ~FrequencyEMatrixStore();

    // Union of the patterns of all lines (values are meaningless).
    const SparseComplexMatrix& Pattern() const;
    // The matrix of line i, as ReadFrequencyEMatrix gives it.
    SparseComplexMatrix Line(int i) const;
    // The values of line i at the entries of Pattern(), in row order and within a row in column
    // order; 0 where the line has no entry. For adding the line into a system whose pattern is
    // fixed, without building a matrix.
    void LineOverPattern(int i, std::vector<Complex>& values) const;
    // Whether the kept lines are held in memory (else Line() reads the files again).
    bool InMemory() const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};
