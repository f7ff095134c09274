// One boundary matrix file of the free-field analysis: lines "%d %d %lf %lf" of row and column
// degree of freedom, real and imaginary part, turned into entries over the equations.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "linalg/small_matrix.hpp"
#include "linalg/sparse_complex_matrix.hpp"

// An entry over the equations; key is row << 32 | column, so that keys order as (row, column).
struct EMatrixEntry {
    uint64_t key;
    Complex value;
};

inline uint64_t EntryKey(int32_t row, int32_t col) {
    return static_cast<uint64_t>(static_cast<uint32_t>(row)) << 32 | static_cast<uint32_t>(col);
}
inline int32_t KeyRow(uint64_t key) {
    return static_cast<int32_t>(key >> 32);
}
inline int32_t KeyColumn(uint64_t key) {
    return static_cast<int32_t>(key & 0xffffffffu);
}

// What became of reading one file.
struct EMatrixFileOutcome {
    enum class Status { kRead, kMissing, kBadInput };
    Status status = Status::kRead;
    int line = 0;       // line of the bad input
    std::string fault;  // what is wrong with it
};

// Appends the entries of the file at path, in file order; entries whose row or column degree of
// freedom is fixed are dropped. Fields a line lacks count as 0, so that an empty line is an
// entry 0 at degree of freedom 0, 0. A degree of freedom outside the nodes' ones is bad input:
// the entries read so far stay, the rest is not read.
EMatrixFileOutcome ReadEMatrixEntries(const std::string& path,
                                      const std::vector<int32_t>& equationMap,
                                      std::vector<EMatrixEntry>& entries);

// Ends the run for an outcome other than kRead: a missing file with the path and the reading
// error text on the next line (exit status 0 after the wait); bad input with status 2.
[[noreturn]] void StopOnEMatrixOutcome(const EMatrixFileOutcome& outcome, const std::string& path,
                                       const std::string& readingErrorText);

// Adds the entries to matrix one by one, in their order.
void AddEntries(SparseComplexMatrix& matrix, const std::vector<EMatrixEntry>& entries);

// Sorts entries by key, keeping file order among equal keys, and sums each key's values in that
// order, starting from its first value: the same sums as AddEntries into an empty matrix.
void MergeEqualEntries(std::vector<EMatrixEntry>& entries);
