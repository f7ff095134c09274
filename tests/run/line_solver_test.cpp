#include "run/line_solver.hpp"

#include <gtest/gtest.h>
#include <omp.h>

#include <cstring>
#include <vector>

#include "run/sparse_solver.hpp"
#include "run/test_systems.hpp"

namespace {

CompressedPattern PatternOf(const SparseComplexMatrix& m) {
    CompressedPattern p;
    p.size = static_cast<int64_t>(m.RowCount());
    p.rowStart.push_back(0);
    for (const auto& row : m.rows) {
        for (const auto& entry : row) p.column.push_back(entry.first);
        p.rowStart.push_back(static_cast<int64_t>(p.column.size()));
    }
    return p;
}

std::vector<Complex> ValuesOf(const SparseComplexMatrix& m, double shift) {
    std::vector<Complex> v;
    for (size_t r = 0; r < m.RowCount(); ++r)
        for (const auto& [c, value] : m.rows[r])
            v.push_back(static_cast<size_t>(c) == r ? value + Complex(0.0, shift) : value);
    return v;
}

bool BitwiseEqual(const std::vector<Complex>& a, const std::vector<Complex>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(Complex)) == 0;
}

// Many value sets on one pattern, as the lines of a frequency loop.
struct ValueSets {
    SparseComplexMatrix matrix = ScatteredMatrix(200, 6, 7, 1.0, true);
    CompressedPattern pattern = PatternOf(matrix);
    std::vector<std::vector<Complex>> values;
    std::vector<Complex> rhs;

    explicit ValueSets(int count) {
        for (int k = 0; k < count; ++k) values.push_back(ValuesOf(matrix, 0.5 * k));
        for (int64_t i = 0; i < pattern.size; ++i) rhs.emplace_back(1.0 + i % 3, -0.5 * (i % 5));
    }
};

TEST(LineSolver, OneAnalysisServesManyValueSetsWithTheResultOfACompleteSolve) {
    ValueSets sets(3);
    SymbolicAnalysis analysis(sets.pattern);
    ASSERT_EQ(analysis.Status(), kSolveOk);
    LineSolver solver(analysis);
    for (const auto& values : sets.values) {
        std::vector<Complex> fast(sets.rhs.size()), complete(sets.rhs.size());
        ASSERT_EQ(solver.Solve(values.data(), sets.rhs.data(), fast.data()), kSolveOk);

        std::vector<int32_t> rowStart, columns;
        for (int64_t s : sets.pattern.rowStart) rowStart.push_back(static_cast<int32_t>(s + 1));
        for (int64_t c : sets.pattern.column) columns.push_back(static_cast<int32_t>(c + 1));
        ASSERT_EQ(SolveCompressedOnce(rowStart, columns, values, sets.rhs.data(), complete.data()),
                  kSolveOk);
        EXPECT_TRUE(BitwiseEqual(fast, complete));
        EXPECT_LT(BackwardError(sets.pattern, values.data(), sets.rhs.data(), fast.data()), 1e-14);
    }
}

TEST(LineSolver, SolutionsDoNotDependOnTheThreadThatComputedThem) {
    ValueSets sets(8);
    SymbolicAnalysis analysis(sets.pattern);
    auto solveAll = [&](int threads) {
        std::vector<std::vector<Complex>> x(sets.values.size(),
                                            std::vector<Complex>(sets.rhs.size()));
#pragma omp parallel num_threads(threads)
        {
            LineSolver solver(analysis);
#pragma omp for schedule(guided, 1)
            for (int k = 0; k < static_cast<int>(sets.values.size()); ++k)
                EXPECT_EQ(solver.Solve(sets.values[k].data(), sets.rhs.data(), x[k].data()),
                          kSolveOk);
        }
        return x;
    };
    const auto serial = solveAll(1);
    const auto parallel = solveAll(2);
    for (size_t k = 0; k < serial.size(); ++k) EXPECT_TRUE(BitwiseEqual(serial[k], parallel[k]));
}

TEST(LineSolver, FailuresMapOntoTheSolveCodes) {
    CompressedPattern empty;
    EXPECT_EQ(SymbolicAnalysis(empty).Status(), kSolveBadInput);

    SparseComplexMatrix m(2);
    m.add(0, 0, 1.0);
    m.add(0, 1, 2.0);
    m.add(1, 0, 2.0);
    m.add(1, 1, 4.0);
    const CompressedPattern pattern = PatternOf(m);
    SymbolicAnalysis analysis(pattern);
    LineSolver solver(analysis);
    std::vector<Complex> x(2), b{1.0, 1.0};
    std::vector<Complex> values = ValuesOf(m, 0.0);
    EXPECT_EQ(solver.Solve(values.data(), b.data(), x.data()), kSolveSingular);
    values[3] = 5.0;
    EXPECT_EQ(solver.Solve(values.data(), b.data(), x.data()), kSolveOk);
    b[1] = Complex(0.0, INFINITY);
    EXPECT_EQ(solver.Solve(values.data(), b.data(), x.data()), kSolveBadInput);
}

}  // namespace
