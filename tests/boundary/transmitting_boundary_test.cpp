#include "boundary/transmitting_boundary.hpp"

#include <gtest/gtest.h>
#include <omp.h>

#include <random>
#include <sstream>

#include "boundary_test_model.hpp"
#include "support/project_fixture.hpp"

namespace {
SparseComplexMatrix FixedMatrix(const ProjectFolder& folder, const std::string& name,
                                const CAnalysisData& model) {
    SparseComplexMatrix m(static_cast<size_t>(model.freeDofCount));
    ReadFixedEMatrix(m, folder.Path(name), model);
    return m;
}

SparseComplexMatrix FrequencyMatrix(const ProjectFolder& folder, int i,
                                    const CAnalysisData& model) {
    SparseComplexMatrix m(static_cast<size_t>(model.freeDofCount));
    ReadFrequencyEMatrix(m, i, folder.Path("output_ff/"), model);
    return m;
}

// Random entries over the degrees of freedom of nodeCount nodes: repeated places, a comment-like
// line that counts as an entry at 0, 0, and an empty last line.
std::string RandomMatrixText(std::mt19937& random, int nodeCount, int lineCount) {
    std::ostringstream text;
    text.precision(17);
    std::uniform_int_distribution<int> dof(0, 2 * nodeCount - 1);
    std::uniform_real_distribution<double> value(-1e3, 1e3);
    for (int n = 0; n < lineCount; ++n) {
        if (n % 7 == 3)
            text << dof(random) << ' ' << dof(random) << ' ' << value(random) << '\n';
        else
            text << dof(random) << ' ' << dof(random) << ' ' << value(random) << ' '
                 << value(random) << "\r\n";
    }
    text << "text\n\n";
    return text.str();
}
}  // namespace

TEST(FixedEMatrix, EntriesAddUpConstrainedPlacesDropAndEmptyLinesCountAtZero) {
    // Node 1 y fixed: equations 0:0x 1:0y 2:1x 3:2x 4:2y.
    const CAnalysisData model = NumberedModel(3, {3});
    ProjectFolder folder;
    folder.Write("RIGHTEmatrix.dat",
                 "0 0 1.5 -2\n"
                 "4 5 1 1\n"
                 "0 0 0.25 0.5\n"
                 "3 0 9 9\n"  // constrained row, free column
                 "2 3 9 9\n"  // constrained column
                 "5 4 1e-3 2E2\r\n");
    folder.Write("LEFTEmatrix.dat", "2 2 1 0\n\n");
    const SparseComplexMatrix m = FixedMatrix(folder, "RIGHTEmatrix.dat", model);
    EXPECT_EQ(m.EntryCount(), 3u);
    EXPECT_EQ(m.rows[0].at(0), Complex(1.75, -1.5));
    EXPECT_EQ(m.rows[3].at(4), Complex(1.0, 1.0));
    EXPECT_EQ(m.rows[4].at(3), Complex(1e-3, 200.0));
    // The empty line adds 0 at degree of freedom 0, 0, unless that is fixed.
    const SparseComplexMatrix free = FixedMatrix(folder, "LEFTEmatrix.dat", NumberedModel(2, {}));
    EXPECT_EQ(free.EntryCount(), 2u);
    EXPECT_EQ(free.rows[0].at(0), Complex());
    EXPECT_EQ(FixedMatrix(folder, "LEFTEmatrix.dat", NumberedModel(2, {0})).EntryCount(), 1u);
}

TEST(FrequencyEMatrix, RightAndLeftFilesOfTheLineSum) {
    const CAnalysisData model = NumberedModel(3, {});
    ProjectFolder folder;
    folder.Write("output_ff/REMat2.dat", "0 0 1 2\n1 1 3 4\n");
    folder.Write("output_ff/LEMat2.dat", "4 4 5 6\n1 1 1 1\n");
    folder.Write("output_ff/REMat3.dat", "5 5 7 7\n");
    const SparseComplexMatrix m = FrequencyMatrix(folder, 2, model);
    EXPECT_EQ(m.EntryCount(), 3u);
    EXPECT_EQ(m.rows[0].at(0), Complex(1.0, 2.0));
    EXPECT_EQ(m.rows[1].at(1), Complex(4.0, 5.0));
    EXPECT_EQ(m.rows[4].at(4), Complex(5.0, 6.0));
}

TEST(EMatrixDeathTest, MissingFilesEndTheRunWithTheirPathAndReadingError) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const CAnalysisData model = NumberedModel(3, {});
    ProjectFolder folder;
    folder.Write("output_ff/REMat5.dat", "0 0 1 1\n");
    const auto expect = [&](const std::string& path, const std::string& text) {
        return "^" + InAnyScratchFolder(path) + "\n" + text + "\n$";
    };
    EXPECT_EXIT((RouteFailureOutputToStderr(), FrequencyMatrix(folder, 7, model)),
                testing::ExitedWithCode(0),
                expect("output_ff/REMat7.dat", "Ematrix7:Reading error"));
    EXPECT_EXIT((RouteFailureOutputToStderr(), FrequencyMatrix(folder, 5, model)),
                testing::ExitedWithCode(0),
                expect("output_ff/LEMat5.dat", "Ematrix5:Reading error"));
    EXPECT_EXIT(
        (RouteFailureOutputToStderr(), FixedMatrix(folder, "output_ff/RIGHTEmatrix.dat", model)),
        testing::ExitedWithCode(0), expect("output_ff/RIGHTEmatrix.dat", "Ematrix:Reading error"));
}

TEST(EMatrixDeathTest, DegreeOfFreedomOutsideTheNodesStopsAsBadInput) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const CAnalysisData model = NumberedModel(3, {});
    ProjectFolder folder;
    folder.Write("RIGHTEmatrix.dat", "0 0 1 1\n1 6 1 1\n");
    EXPECT_EXIT(FixedMatrix(folder, "RIGHTEmatrix.dat", model), testing::ExitedWithCode(2),
                "RIGHTEmatrix\\.dat:2: degree of freedom 6 is outside 0\\.\\.5");
    folder.Write("RIGHTEmatrix.dat", "-1 0 1 1\n");
    EXPECT_EXIT(FixedMatrix(folder, "RIGHTEmatrix.dat", model), testing::ExitedWithCode(2),
                "RIGHTEmatrix\\.dat:1: degree of freedom -1 ");
}

class FrequencyEMatrixStoreTest : public testing::Test {
  protected:
    // Lines 1..5 with patterns that differ from line to line; node 2 x is fixed.
    FrequencyEMatrixStoreTest() : model(NumberedModel(6, {4}, 6)) {
        std::mt19937 random(7);
        for (int i = 1; i < model.frequencyCount; ++i) {
            folder.Write("output_ff/REMat" + std::to_string(i) + ".dat",
                         RandomMatrixText(random, 6, 20 + 9 * i));
            folder.Write("output_ff/LEMat" + std::to_string(i) + ".dat",
                         RandomMatrixText(random, 6, 30 - 4 * i));
        }
    }

    // Line() and LineOverPattern() of every line, taken by several threads at once, against the
    // files read directly.
    void ExpectEveryLineAsRead(const FrequencyEMatrixStore& store) {
        const int lines = model.frequencyCount;
        std::vector<SparseComplexMatrix> matrices(4 * lines);
        std::vector<std::vector<Complex>> overPattern(4 * lines);
#pragma omp parallel for schedule(guided, 1) num_threads(4)
        for (int n = 4; n < 4 * lines; ++n) {
            matrices[n] = store.Line(n / 4);
            store.LineOverPattern(n / 4, overPattern[n]);
        }
        for (int n = 4; n < 4 * lines; ++n) {
            const int i = n / 4;
            SCOPED_TRACE("line " + std::to_string(i));
            const SparseComplexMatrix expected = FrequencyMatrix(folder, i, model);
            ExpectSameEntries(matrices[n], expected);
            const std::vector<Complex>& values = overPattern[n];
            size_t k = 0;
            for (size_t r = 0; r < store.Pattern().RowCount(); ++r)
                for (const auto& [c, unused] : store.Pattern().rows[r]) {
                    const auto found = expected.rows[r].find(c);
                    EXPECT_EQ(values.at(k++),
                              found == expected.rows[r].end() ? Complex() : found->second);
                }
            EXPECT_EQ(k, values.size());
        }
    }

    CAnalysisData model;
    ProjectFolder folder;
};

TEST_F(FrequencyEMatrixStoreTest, LinesEqualTheFilesWhetherHeldOrReadAgain) {
    const FrequencyEMatrixStore held(folder.Path("output_ff/"), model, uint64_t(1) << 30);
    EXPECT_TRUE(held.InMemory());
    ExpectEveryLineAsRead(held);
    const FrequencyEMatrixStore reread(folder.Path("output_ff/"), model, 0);
    EXPECT_FALSE(reread.InMemory());
    ExpectEveryLineAsRead(reread);
    // A budget that holds the first lines only gives up holding any.
    const FrequencyEMatrixStore partly(folder.Path("output_ff/"), model, 600);
    EXPECT_FALSE(partly.InMemory());
    ExpectEveryLineAsRead(partly);
}

TEST_F(FrequencyEMatrixStoreTest, PatternIsTheUnionOfTheLines) {
    SparseComplexMatrix all(static_cast<size_t>(model.freeDofCount));
    for (int i = 1; i < model.frequencyCount; ++i) all = all + FrequencyMatrix(folder, i, model);
    const FrequencyEMatrixStore store(folder.Path("output_ff/"), model, 0);
    const SparseComplexMatrix& pattern = store.Pattern();
    ASSERT_EQ(pattern.RowCount(), all.RowCount());
    for (size_t r = 0; r < all.RowCount(); ++r) {
        ASSERT_EQ(pattern.rows[r].size(), all.rows[r].size()) << "row " << r;
        for (const auto& [c, v] : all.rows[r]) EXPECT_EQ(pattern.rows[r].count(c), 1u);
    }
}

TEST_F(FrequencyEMatrixStoreTest, MissingFileEndsTheRunAtConstructionForTheLowestLine) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    std::filesystem::remove(folder.Path("output_ff/LEMat4.dat"));
    std::filesystem::remove(folder.Path("output_ff/REMat2.dat"));
    EXPECT_EXIT((RouteFailureOutputToStderr(),
                 FrequencyEMatrixStore(folder.Path("output_ff/"), model, uint64_t(1) << 30)),
                testing::ExitedWithCode(0),
                "^" + InAnyScratchFolder("output_ff/REMat2.dat") + "\nEmatrix2:Reading error\n$");
}
