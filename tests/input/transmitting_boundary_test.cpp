#include "input/transmitting_boundary.hpp"

#include <gtest/gtest.h>
#include <omp.h>

#include <random>
#include <sstream>

#include "support/boundary_test_model.hpp"
#include "support/project_fixture.hpp"

namespace {
Entries FixedMatrix(const ProjectFolder& folder, const std::string& name,
                    const CAnalysisData& model) {
    SparseComplexMatrix m(static_cast<size_t>(model.freeDofCount));
    ReadFixedEMatrix(m, folder.Path(name), model);
    return EntriesOf(m);
}

Entries FrequencyMatrix(const ProjectFolder& folder, int i, const CAnalysisData& model) {
    SparseComplexMatrix m(static_cast<size_t>(model.freeDofCount));
    ReadFrequencyEMatrix(m, i, folder.Path("output_ff/"), model);
    return EntriesOf(m);
}
}  // namespace

TEST(EMatrixFiles, EntriesAddUpConstrainedPlacesDropAndAnEmptyLineCountsAtZero) {
    // Node 1 y fixed: equations 0:0x 1:0y 2:1x 3:2x 4:2y.
    const CAnalysisData model = NumberedModel(3, {3});
    ProjectFolder folder;
    folder.Write("RIGHTEmatrix.dat",
                 "0 0 1.5 -2\n4 5 1 1\n0 0 0.25 0.5\n3 0 9 9\n2 3 9 9\n5 4 1e-3 2E2\r\n");
    EXPECT_EQ(FixedMatrix(folder, "RIGHTEmatrix.dat", model),
              (Entries{{{0, 0}, {1.75, -1.5}}, {{3, 4}, {1, 1}}, {{4, 3}, {1e-3, 200}}}));
    // The empty line adds 0 at degree of freedom 0, 0, unless that is fixed.
    folder.Write("LEFTEmatrix.dat", "2 2 1 0\n\n");
    EXPECT_EQ(FixedMatrix(folder, "LEFTEmatrix.dat", NumberedModel(2, {})),
              (Entries{{{0, 0}, 0.0}, {{2, 2}, 1.0}}));
    EXPECT_EQ(FixedMatrix(folder, "LEFTEmatrix.dat", NumberedModel(2, {0})),
              (Entries{{{1, 1}, 1.0}}));
}

// Lines 1..5 of random entries with patterns that differ from line to line, repeated places,
// short lines and a line of text that counts as an entry at 0, 0; node 2 x fixed. Line() and
// LineOverPattern(), taken by several threads at once, equal the files read directly, whether
// the store holds the lines, reads them again, or gives up holding them for a short budget.
TEST(FrequencyEMatrixStore, LinesEqualTheFilesWhetherHeldOrReadAgain) {
    const CAnalysisData model = NumberedModel(6, {4}, 6);
    ProjectFolder folder;
    std::mt19937 random(7);
    std::uniform_int_distribution<int> dof(0, 11);
    std::uniform_real_distribution<double> value(-1e3, 1e3);
    for (int i = 1; i < model.frequencyCount; ++i)
        for (const std::string side : {"R", "L"}) {
            std::ostringstream text;
            text.precision(17);
            for (int n = 0; n < 10 + 9 * i; ++n) {
                text << dof(random) << ' ' << dof(random) << ' ' << value(random);
                if (n % 7 != 3) text << ' ' << value(random) << '\r';
                text << '\n';
            }
            folder.Write("output_ff/" + side + "EMat" + std::to_string(i) + ".dat",
                         text.str() + "text\n\n");
        }
    Entries pattern;
    for (int i = 1; i < model.frequencyCount; ++i)
        for (const auto& [at, v] : FrequencyMatrix(folder, i, model)) pattern[at] = 0.0;

    for (const uint64_t budget : {uint64_t(1) << 30, uint64_t(0), uint64_t(600)}) {
        const FrequencyEMatrixStore store(folder.Path("output_ff/"), model, budget);
        EXPECT_EQ(store.InMemory(), budget > 600);
        const int lines = model.frequencyCount;
        std::vector<Entries> matrices(4 * lines);
        std::vector<std::vector<Complex>> overPattern(4 * lines);
#pragma omp parallel for schedule(guided, 1) num_threads(4)
        for (int n = 4; n < 4 * lines; ++n) {
            matrices[n] = EntriesOf(store.Line(n / 4));
            store.LineOverPattern(n / 4, overPattern[n]);
        }
        for (int n = 4; n < 4 * lines; ++n) {
            const Entries expected = FrequencyMatrix(folder, n / 4, model);
            EXPECT_EQ(matrices[n], expected) << "line " << n / 4;
            std::vector<Complex> values;
            for (const auto& [at, unused] : pattern)
                values.push_back(expected.count(at) ? expected.at(at) : Complex());
            EXPECT_EQ(overPattern[n], values) << "line " << n / 4;
        }
    }
}
