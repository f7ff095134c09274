#include "linalg/sparse_complex_matrix.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <map>
#include <vector>

#include "linalg/sparse_solver.hpp"

namespace {

TEST(SparseComplexMatrix, StoredZerosAndEmptyRowsStayThroughArithmeticAndCompression) {
    SparseComplexMatrix a(3);
    a.add(0, 1, Complex(0.0, 0.0));
    a.add(2, 1, Complex(2.0, 1.0));
    a.add(2, 1, Complex(-2.0, -1.0));  // cancels to zero, still stored
    SparseComplexMatrix c = Complex(3.0, 4.0) * (a + a);
    c.Compress();
    EXPECT_EQ(c.rowStart, (std::vector<int32_t>{1, 2, 2, 3}));
    EXPECT_EQ(c.columnIndex, (std::vector<int32_t>{2, 2}));
    EXPECT_EQ(c.values, (std::vector<Complex>{Complex(0.0, 0.0), Complex(0.0, 0.0)}));
}

TEST(SparseComplexMatrix, SumAndDifferenceKeepTheUnionWhicheverOrderTheArgumentsCome) {
    SparseComplexMatrix a(2), b(2), empty(2);
    a.add(0, 0, Complex(1.0, 2.0));
    a.add(1, 0, 3.0);
    b.add(0, 0, Complex(0.5, 0.0));
    b.add(0, 1, Complex(1.0, -3.0));
    using Rows = std::vector<std::map<int32_t, Complex>>;
    EXPECT_EQ((a + b).rows, (Rows{{{0, Complex(1.5, 2.0)}, {1, Complex(1.0, -3.0)}}, {{0, 3.0}}}));
    EXPECT_EQ((b + a).rows, (a + b).rows);
    EXPECT_EQ((a - b).rows, (Rows{{{0, Complex(0.5, 2.0)}, {1, Complex(-1.0, 3.0)}}, {{0, 3.0}}}));
    EXPECT_EQ((a + empty).rows, a.rows);
    EXPECT_EQ((empty + a).rows, a.rows);
}

TEST(SparseComplexMatrix, ProductWithVectorSumsInAscendingColumnOrder) {
    SparseComplexMatrix a(1);
    // Inserted out of order; summed from column 0 upwards: (1e16 + 1) - 1e16 is 0 in doubles.
    a.add(0, 2, -1e16);
    a.add(0, 0, 1e16);
    a.add(0, 1, 1.0);
    ComplexVector x(3);
    for (size_t k = 0; k < 3; ++k) x[k] = Complex(1.0, 1.0);
    EXPECT_EQ((a * x)[0], Complex(0.0, 0.0));
}

TEST(SparseComplexMatrix, SolveOfAnUnsymmetricSystemLeavesNoResidual) {
    // Unsymmetric in values and in pattern; zeros are left out.
    const Complex values[4][4] = {{{4, 1}, {1, -2}, 0, 0.5},
                                  {{-1, 0.5}, 3, {0, 2}, 0},
                                  {0, 0, {5, -1}, -2},
                                  {{0, 3}, 0, 0, 6}};
    SparseComplexMatrix a(4);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            if (values[i][j] != 0.0) a.add(i, j, values[i][j]);
    ComplexVector b(4);
    b.data = {1.0, Complex(0.0, 1.0), Complex(-2.0, 0.5), Complex(0.25, -1.0)};
    ComplexVector x = b;
    ASSERT_EQ(a.solve(x.begin_ptr()), 0);
    const ComplexVector residual = a * x;
    for (size_t k = 0; k < 4; ++k) EXPECT_LT(std::abs(residual[k] - b[k]), 1e-14) << k;
}

TEST(SparseComplexMatrix, SolveReportsSingularNonFiniteAndMalformedSystems) {
    SparseComplexMatrix singular(2);
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j) singular.add(i, j, Complex(1.0, 1.0));
    std::vector<Complex> b{1.0, 2.0}, x(2);
    EXPECT_EQ(singular.solve(b.data()), -4);
    EXPECT_EQ(b, (std::vector<Complex>{1.0, 2.0}));  // left untouched

    SparseComplexMatrix notFinite(1);
    notFinite.add(0, 0, Complex(NAN, 0.0));
    EXPECT_EQ(notFinite.solve(b.data()), -1);
    // Column 3 in a system of 2; columns not ascending within a row.
    EXPECT_EQ(SolveCompressedOnce({1, 2, 3}, {1, 3}, {1.0, 1.0}, b.data(), x.data()), -1);
    EXPECT_EQ(SolveCompressedOnce({1, 3, 4}, {2, 1, 2}, {1.0, 1.0, 1.0}, b.data(), x.data()), -1);
}

TEST(SparseComplexMatrixDeathTest, FailedSolveEndsTheRunWithTheTextOfItsCode) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EQ(SparseComplexMatrix(0).solve(nullptr), -1);  // empty: the solver is not called
    // Standard output goes to standard error for the death test; -1234 as an exit status.
    EXPECT_EXIT(
        {
            dup2(2, 1);
            StopOnSolverFailure(SolveFailureMessage(-1));
        },
        ::testing::ExitedWithCode(-1234 & 0xff),
        "入力に矛盾がありますSolve Error : -1 開発元にご連絡下さい\n$");
}

}  // namespace
