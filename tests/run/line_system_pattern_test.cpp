#include "run/line_system_pattern.hpp"

#include <gtest/gtest.h>

#include <cstring>

#include "run/line_system_chain.hpp"
#include "run/line_vectors.hpp"
#include "run/test_systems.hpp"

namespace {

bool SameBits(Complex a, Complex b) {
    return std::memcmp(&a, &b, sizeof(Complex)) == 0;
}

// Every entry of the plain system has the same bits in its place of the pattern; places that
// only the union has hold zero.
void ExpectLineEqualsChain(const LineTestModel& model, int mode, int line) {
    const LineSystemTerms terms = model.Terms(mode);
    LineSystemPattern pattern(terms, model.stiffness);
    ASSERT_TRUE(pattern.LoadStiffness(model.stiffness));
    LineScratch scratch = pattern.MakeScratch();
    const CompressedPattern& p = pattern.System();
    std::vector<Complex> values(p.column.size()), load(pattern.EquationCount());
    const double w = LineCircularFrequency(line, terms.duration);
    ASSERT_TRUE(pattern.FormLine(line, w, values.data(), load.data(), scratch));

    const ChainLine chain = FormLineByChain(terms, model.stiffness, line, w);
    size_t matched = 0;
    for (int64_t r = 0; r < p.size; ++r) {
        const auto& row = chain.system.rows[r];
        for (int64_t k = p.rowStart[r]; k < p.rowStart[r + 1]; ++k) {
            const auto it = row.find(static_cast<int32_t>(p.column[k]));
            if (it == row.end()) {
                EXPECT_EQ(values[k], Complex(0.0, 0.0)) << "row " << r << " place " << k;
                continue;
            }
            EXPECT_TRUE(SameBits(values[k], it->second)) << "row " << r << " col " << it->first;
            ++matched;
        }
    }
    EXPECT_EQ(matched, chain.system.EntryCount());
    if (mode == 2) return;
    ASSERT_EQ(chain.boundaryLoad.size(), load.size());
    for (size_t r = 0; r < load.size(); ++r)
        EXPECT_TRUE(SameBits(load[r], chain.boundaryLoad[r])) << "load row " << r;
}

TEST(LineSystemPattern, TransmittingSidesGiveTheValuesOfThePlainArithmetic) {
    LineTestModel model;
    for (int line : {1, 2, 5}) ExpectLineEqualsChain(model, 0, line);
}

TEST(LineSystemPattern, ViscousSidesGiveTheValuesOfThePlainArithmetic) {
    LineTestModel model;
    for (int line : {1, 4}) ExpectLineEqualsChain(model, 1, line);
}

TEST(LineSystemPattern, NoSideTreatmentGivesTheValuesOfThePlainArithmetic) {
    LineTestModel model;
    for (int line : {1, 3}) ExpectLineEqualsChain(model, 2, line);
}

TEST(LineSystemPattern, StiffnessOfAnotherPatternIsRefused) {
    LineTestModel model;
    LineSystemPattern pattern(model.Terms(2), model.stiffness);
    SparseComplexMatrix scaled = 2.0 * model.stiffness;
    EXPECT_TRUE(pattern.LoadStiffness(scaled));
    SparseComplexMatrix wider = model.stiffness;
    wider.add(0, static_cast<int32_t>(wider.RowCount()) - 1, 1.0);
    if (model.stiffness.rows[0].count(static_cast<int32_t>(wider.RowCount()) - 1) == 0)
        EXPECT_FALSE(pattern.LoadStiffness(wider));
    SparseComplexMatrix shorter(model.stiffness.RowCount() - 1);
    EXPECT_FALSE(pattern.LoadStiffness(shorter));
}

TEST(LineSystemPattern, LineMatrixBeyondTheKnownPatternIsReported) {
    LineTestModel model;
    LineSystemTerms terms = model.Terms(0);
    SparseComplexMatrix smallPattern(model.linePattern.RowCount());
    terms.lineMatrixPattern = &smallPattern;
    LineSystemPattern pattern(terms, model.stiffness);
    LineScratch scratch = pattern.MakeScratch();
    std::vector<Complex> values(pattern.System().column.size()), load(pattern.EquationCount());
    EXPECT_FALSE(pattern.FormLine(1, 1.0, values.data(), load.data(), scratch));
}

}  // namespace
