#include "linalg/sparse_solver.hpp"

#include "linalg/line_solver.hpp"

int SolveCompressedOnce(const std::vector<int32_t>& rowStart,
                        const std::vector<int32_t>& columnIndex,
                        const std::vector<std::complex<double>>& values,
                        const std::complex<double>* b, std::complex<double>* x) {
    if (rowStart.size() < 2) return kSolveBadInput;
    CompressedPattern pattern;
    pattern.size = static_cast<int64_t>(rowStart.size()) - 1;
    pattern.rowStart.reserve(rowStart.size());
    for (int32_t start : rowStart) pattern.rowStart.push_back(int64_t{start} - 1);
    pattern.column.reserve(columnIndex.size());
    for (int32_t col : columnIndex) pattern.column.push_back(int64_t{col} - 1);
    // A malformed compressed form is refused before the solver sees it.
    const int64_t entries = pattern.EntryCount();
    if (pattern.rowStart.front() != 0 || entries != static_cast<int64_t>(pattern.column.size()) ||
        entries != static_cast<int64_t>(values.size()))
        return kSolveBadInput;
    for (int64_t i = 0; i < pattern.size; ++i) {
        if (pattern.rowStart[i + 1] < pattern.rowStart[i]) return kSolveBadInput;
        for (int64_t k = pattern.rowStart[i]; k < pattern.rowStart[i + 1]; ++k)
            if (pattern.column[k] < 0 || pattern.column[k] >= pattern.size ||
                (k > pattern.rowStart[i] && pattern.column[k] <= pattern.column[k - 1]))
                return kSolveBadInput;
    }

    SymbolicAnalysis analysis(pattern);
    LineSolver solver(analysis);
    return solver.Solve(values.data(), b, x);
}
