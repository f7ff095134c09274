#include "run/sparse_complex_matrix.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <vector>

#include "run/sparse_solver.hpp"
#include "run/test_systems.hpp"

namespace {

std::vector<std::pair<int32_t, int32_t>> PatternOf(const SparseComplexMatrix& m) {
    std::vector<std::pair<int32_t, int32_t>> pattern;
    for (size_t r = 0; r < m.rows.size(); ++r)
        for (const auto& entry : m.rows[r])
            pattern.emplace_back(static_cast<int32_t>(r), entry.first);
    return pattern;
}

TEST(SparseComplexMatrix, StoredZerosStayThroughArithmeticAndCompression) {
    SparseComplexMatrix a(2);
    a.add(0, 1, Complex(0.0, 0.0));
    a.add(1, 1, Complex(2.0, 1.0));
    a.add(1, 1, Complex(-2.0, -1.0));  // cancels to zero, still stored
    const SparseComplexMatrix b = Complex(3.0, 4.0) * (a + a);
    SparseComplexMatrix c = b;
    c.Compress();
    EXPECT_EQ(c.rowStart, (std::vector<int32_t>{1, 2, 3}));
    EXPECT_EQ(c.columnIndex, (std::vector<int32_t>{2, 2}));
    EXPECT_EQ(c.values, (std::vector<Complex>{Complex(0.0, 0.0), Complex(0.0, 0.0)}));
}

TEST(SparseComplexMatrix, EmptyRowGivesEqualConsecutiveRowStarts) {
    SparseComplexMatrix m(3);
    m.add(0, 0, 1.0);
    m.add(2, 1, 2.0);
    m.Compress();
    EXPECT_EQ(m.rowStart, (std::vector<int32_t>{1, 2, 2, 3}));
}

TEST(SparseComplexMatrix, SumKeepsTheUnionWhicheverOrderTheArgumentsCome) {
    SparseComplexMatrix a(2), b(2), empty(2);
    a.add(0, 0, Complex(1.0, 2.0));
    a.add(1, 0, 3.0);
    b.add(0, 0, Complex(0.5, 0.0));
    b.add(0, 1, Complex(0.0, 1.0));
    const SparseComplexMatrix ab = a + b, ba = b + a;
    EXPECT_EQ(PatternOf(ab), PatternOf(ba));
    EXPECT_EQ(PatternOf(ab), (std::vector<std::pair<int32_t, int32_t>>{{0, 0}, {0, 1}, {1, 0}}));
    EXPECT_EQ(ab.rows[0].at(0), Complex(1.5, 2.0));
    EXPECT_EQ(ab.rows[0].at(1), Complex(0.0, 1.0));
    EXPECT_EQ((a + empty).rows, a.rows);
    EXPECT_EQ((empty + a).rows, a.rows);
}

TEST(SparseComplexMatrix, DifferenceCreatesMissingEntriesNegated) {
    SparseComplexMatrix a(1), b(1);
    a.add(0, 0, 5.0);
    b.add(0, 0, 2.0);
    b.add(0, 1, Complex(1.0, -3.0));
    const SparseComplexMatrix d = a - b;
    EXPECT_EQ(d.rows[0].at(0), Complex(3.0, 0.0));
    EXPECT_EQ(d.rows[0].at(1), Complex(-1.0, 3.0));
}

TEST(SparseComplexMatrix, ScalarProductsKeepThePattern) {
    SparseComplexMatrix a(1);
    a.add(0, 2, Complex(1.0, 2.0));
    EXPECT_EQ((Complex(0.0, 2.0) * a).rows[0].at(2), Complex(-4.0, 2.0));
    EXPECT_EQ((2.0 * a).rows[0].at(2), Complex(2.0, 4.0));
}

TEST(SparseComplexMatrix, ProductWithVectorSumsInAscendingColumnOrder) {
    SparseComplexMatrix a(1);
    // Inserted out of order; summed from column 0 upwards: (1e16 + 1) - 1e16 is 0 in doubles.
    a.add(0, 2, -1e16);
    a.add(0, 0, 1e16);
    a.add(0, 1, 1.0);
    ComplexVector x(3);
    for (size_t k = 0; k < 3; ++k) x[k] = Complex(1.0, 1.0);
    const ComplexVector y = a * x;
    EXPECT_EQ(y[0], Complex(0.0, 0.0));
}

TEST(SparseComplexMatrix, SolveMatchesDenseEliminationOnUnsymmetricSystem) {
    const TestSystem system = UnsymmetricTestSystem();
    SparseComplexMatrix a = system.matrix;
    std::vector<Complex> b = system.rhs;
    ASSERT_EQ(a.solve(b.data()), 0);
    const std::vector<Complex> reference = DenseSolve(system.matrix, system.rhs);
    for (size_t k = 0; k < b.size(); ++k) EXPECT_LT(std::abs(b[k] - reference[k]), 1e-12);
}

TEST(SparseComplexMatrix, SolveReportsSingularAndNonFiniteSystems) {
    SparseComplexMatrix singular(2);
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j) singular.add(i, j, Complex(1.0, 1.0));
    std::vector<Complex> b{1.0, 2.0};
    EXPECT_EQ(singular.solve(b.data()), -4);
    EXPECT_EQ(b, (std::vector<Complex>{1.0, 2.0}));  // left untouched

    SparseComplexMatrix notFinite(1);
    notFinite.add(0, 0, Complex(NAN, 0.0));
    EXPECT_EQ(notFinite.solve(b.data()), -1);
}

TEST(SparseComplexMatrix, MalformedCompressedFormIsRefused) {
    std::vector<Complex> x(2), b{1.0, 1.0};
    // Column 3 in a system of 2.
    EXPECT_EQ(SolveCompressedOnce({1, 2, 3}, {1, 3}, {1.0, 1.0}, b.data(), x.data()), -1);
    // Columns not ascending within a row.
    EXPECT_EQ(SolveCompressedOnce({1, 3, 4}, {2, 1, 2}, {1.0, 1.0, 1.0}, b.data(), x.data()), -1);
}

// The failure path ends the process: its standard output goes to standard error here so that
// the death test can read it.
void SolveEmptySystemWithOutputOnStderr() {
    dup2(2, 1);
    SparseComplexMatrix empty(0);
    const int status = empty.solve(nullptr);
    if (status != 0) FailSolve(status);
}

TEST(SparseComplexMatrixDeathTest, EmptySystemEndsTheRunWithSolverFailure) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // -1234 as the low byte of an exit status.
    EXPECT_EXIT(SolveEmptySystemWithOutputOnStderr(), ::testing::ExitedWithCode(-1234 & 0xff),
                "入力に矛盾がありますSolve Error : -1 開発元にご連絡下さい\n$");
}

}  // namespace
