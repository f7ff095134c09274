#include "run/frequency_loop.hpp"

#include <gtest/gtest.h>
#include <omp.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "run/line_system_chain.hpp"
#include "run/line_vectors.hpp"
#include "run/test_systems.hpp"

namespace {

std::vector<Complex> SolveAllLinesByChain(LineTestModel& model, int mode) {
    const LineSystemTerms terms = model.Terms(mode);
    EnsureSpectrumLength(model.analysis.nodes, LineTestModel::kLines);
    testing::internal::CaptureStderr();
    for (int i = 1; i < model.analysis.frequencyCount; ++i)
        SolveLineByChain(terms, model.stiffness, i, model.analysis);
    testing::internal::GetCapturedStderr();
    return model.Spectra();
}

// The console lines are left for the caller to capture when quiet is false.
std::vector<Complex> SolveAllLinesFast(LineTestModel& model, int mode, int threads,
                                       bool quiet = true) {
    const int saved = omp_get_max_threads();
    omp_set_num_threads(threads);
    if (quiet) testing::internal::CaptureStderr();
    FrequencyLoop loop(model.Terms(mode));
    loop.Run(model.stiffness, model.analysis);
    if (quiet) testing::internal::GetCapturedStderr();
    omp_set_num_threads(saved);
    return model.Spectra();
}

size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

TEST(FrequencyLoop, SolvesEveryLineAsThePlainWayDoes) {
    for (int mode : {0, 1, 2}) {
        LineTestModel plain, fast;
        const std::vector<Complex> expected = SolveAllLinesByChain(plain, mode);
        const std::vector<Complex> actual = SolveAllLinesFast(fast, mode, 2);
        ASSERT_EQ(actual.size(), expected.size());
        // Without side matrices of their own the two ways share a pattern and agree exactly;
        // the union pattern of the side matrices orders the elimination differently.
        const double tolerance = mode == 0 ? 1e-12 : 0.0;
        for (size_t k = 0; k < actual.size(); ++k)
            EXPECT_LE(std::abs(actual[k] - expected[k]), tolerance * std::abs(expected[k]))
                << "mode " << mode << " entry " << k;
    }
}

TEST(FrequencyLoop, LeavesLineZeroAndFixedDegreesOfFreedomAtZero) {
    LineTestModel model;
    SolveAllLinesFast(model, 1, 2);
    for (const CNode& node : model.analysis.nodes) {
        ASSERT_EQ(node.dispX.size(), static_cast<size_t>(LineTestModel::kLines));
        EXPECT_EQ(node.dispX[0], Complex(0.0, 0.0));
    }
    // Degrees of freedom 0, 1 (node 0), 7 (y of node 3) and 30 (x of node 15) are fixed.
    for (int i = 1; i < LineTestModel::kLines; ++i) {
        EXPECT_EQ(model.analysis.nodes[0].dispX[i], Complex(0.0, 0.0));
        EXPECT_EQ(model.analysis.nodes[0].dispY[i], Complex(0.0, 0.0));
        EXPECT_EQ(model.analysis.nodes[3].dispY[i], Complex(0.0, 0.0));
        EXPECT_EQ(model.analysis.nodes[15].dispX[i], Complex(0.0, 0.0));
        EXPECT_NE(model.analysis.nodes[3].dispX[i], Complex(0.0, 0.0));
    }
}

TEST(FrequencyLoop, ResultsDoNotDependOnTheThreadCount) {
    LineTestModel one, two;
    const std::vector<Complex> a = SolveAllLinesFast(one, 0, 1);
    const std::vector<Complex> b = SolveAllLinesFast(two, 0, 2);
    ASSERT_EQ(a.size(), b.size());
    EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof(Complex)), 0);
}

TEST(FrequencyLoop, ReportsEachLineOnStandardError) {
    LineTestModel model;
    testing::internal::CaptureStderr();
    SolveAllLinesFast(model, 2, 2, false);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(Count(err, "\rCalculate "), static_cast<size_t>(LineTestModel::kLines - 1));
    EXPECT_EQ(err.find('\n'), std::string::npos);
    // Line 2 of 8 s: 0.25 Hz, 2 pi / 8 * 2 rad/s, 8 * |0.3 + 0.4i|.
    EXPECT_NE(err.find("\rCalculate 0.25 Hz : ωs = 1.57 FFTSpc 4.000"), std::string::npos);
}

TEST(FrequencyLoop, SingleLineCountSolvesNothingAndStaysSilent) {
    LineTestModel model;
    model.analysis.frequencyCount = 1;
    testing::internal::CaptureStderr();
    SolveAllLinesFast(model, 0, 2, false);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    for (const CNode& node : model.analysis.nodes) EXPECT_EQ(node.dispX.size(), 0u);
}

TEST(FrequencyLoop, KeepsItsAnalysisForStiffnessOfTheSamePattern) {
    LineTestModel model;
    FrequencyLoop loop(model.Terms(2));
    testing::internal::CaptureStderr();
    loop.Run(model.stiffness, model.analysis);
    const LineSystemPattern* first = loop.Pattern();
    const SparseComplexMatrix softer = 0.5 * model.stiffness;
    loop.Run(softer, model.analysis);
    EXPECT_EQ(loop.Pattern(), first);
    const size_t entries = first->System().column.size();
    SparseComplexMatrix wider = model.stiffness;
    const int32_t last = static_cast<int32_t>(wider.RowCount()) - 1;
    ASSERT_EQ(wider.rows[0].count(last) + wider.rows[last].count(0), 0u);
    wider.add(0, last, 0.0);
    wider.add(last, 0, 0.0);
    loop.Run(wider, model.analysis);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(loop.Pattern()->System().column.size(), entries + 2);
}

}  // namespace

namespace {

// Every line singular: all terms zero. Standard output goes to standard error for the death test.
void SolveSingularLinesWithOutputOnStderr() {
    dup2(2, 1);
    LineTestModel model;
    const SparseComplexMatrix zero = 0.0 * model.stiffness;
    model.mass = 0.0 * model.mass;
    model.baseViscous = 0.0 * model.baseViscous;
    omp_set_num_threads(2);
    FrequencyLoop loop(model.Terms(2));
    loop.Run(zero, model.analysis);
}

TEST(FrequencyLoopDeathTest, FailedLineEndsTheWholeRunFromItsThread) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        SolveSingularLinesWithOutputOnStderr(), ::testing::ExitedWithCode(-1234 & 0xff),
        "0 pivotがあります。factorizationが問題ですSolve Error : -4 開発元にご連絡下さい\n");
}

}  // namespace
