#include "solve/equivalent_linear_iteration.hpp"

#include <gtest/gtest.h>
#include <omp.h>

#include <boost/make_shared.hpp>
#include <cmath>
#include <cstring>
#include <numbers>

#include "element/constant_operators.hpp"
#include "solve/model_preparation.hpp"
#include "support/soil_column.hpp"

namespace {

// Two cycles of 3 Hz at 80 gal in 10.24 s: shear strains of some 1e-4 in the column.
std::vector<double> SineBurst() {
    std::vector<double> acc(1024, 0.0);
    for (int k = 0; k < 67; ++k) acc[k] = 0.8 * std::sin(2 * std::numbers::pi * 3.0 * k * 0.01);
    return acc;
}

// A column of table-model soil, each element with a material of its own: the modulus ratio falls
// from 1 to 0.15 and damping rises from 1 % to 20 % over strains from 1e-6 to 1e-2. Flat tables
// make the new modulus the old one exactly.
SoilColumn StrainDependentColumn(bool flat = false) {
    BuildConstantOperators();
    auto m = boost::make_shared<DAT_Othermoel>();
    m->type = MaterialModel::kTable;
    m->rho1 = m->rho2 = SoilColumn::kDensity;
    m->G0 = m->G = SoilColumn::kModulus;
    m->h = 0.01;
    m->nu = 0.3;
    m->strainTable = {1e-6, 1e-5, 1e-4, 1e-3, 1e-2};
    m->gTable = flat ? std::vector<double>(5, 1.0) : std::vector<double>{1, 0.95, 0.75, 0.4, 0.15};
    m->hTable =
        flat ? std::vector<double>(5, 0.01) : std::vector<double>{0.01, 0.02, 0.06, 0.14, 0.2};
    m->UpdateModuli();
    SoilColumn column(4, 20, m);
    GivePrivateMaterials(column.analysis);
    column.SetWave(SineBurst(), 0.01, 12.0);
    column.analysis.effectiveStrainRatio = 0.65;
    column.analysis.tolerance = 0.02;
    column.analysis.iterationLimit = 10;
    return column;
}

bool SameTopSpectrum(const SoilColumn& a, const SoilColumn& b) {
    const auto &x = a.TopNode().dispX.data, &y = b.TopNode().dispX.data;
    return x.size() == y.size() && std::memcmp(x.data(), y.data(), x.size() * sizeof(Complex)) == 0;
}

// Settling, and at the limit: the spectra are those of the first moduli, the materials carry the
// next ones.
TEST(EquivalentLinearIteration, ColumnSettlesInAFewIterationsAndAtTheLimitModuliAreUpdated) {
    SoilColumn linear = StrainDependentColumn();
    EXPECT_EQ(linear.Solve(false).first, "");
    SoilColumn column = StrainDependentColumn();
    const std::string out = column.Solve(true).first;
    const size_t iterations = Count(out, "\n等価線形化計算 ");
    EXPECT_EQ(out.rfind("\n等価線形化計算 1 回目\nERROR = ", 0), 0u);
    EXPECT_EQ(Count(out, "\tTOL=0.02\n"), iterations);
    EXPECT_GE(iterations, 2u);
    EXPECT_LE(iterations, 6u);
    std::vector<double> errors;
    for (size_t at = out.find("ERROR = "); at != std::string::npos;
         at = out.find("ERROR = ", at + 1))
        errors.push_back(std::stod(out.substr(at + 8)));
    ASSERT_EQ(errors.size(), iterations);
    EXPECT_LT(errors.back(), 0.02);
    for (size_t k = 0; k + 1 < errors.size(); ++k) EXPECT_LT(errors[k + 1], errors[k]);
    // The soil has softened, most at depth, and the last solve used the softened moduli.
    const DAT_Material& top = *column.analysis.elements.back().material;
    const DAT_Material& bottom = *column.analysis.elements.front().material;
    EXPECT_LT(bottom.Gused, top.Gused);
    EXPECT_LT(top.Gused, SoilColumn::kModulus);
    EXPECT_FALSE(SameTopSpectrum(column, linear));

    SoilColumn limited = StrainDependentColumn();
    limited.analysis.tolerance = 0.0;
    limited.analysis.iterationLimit = 1;
    EXPECT_EQ(Count(limited.Solve(true).first, "ERROR = "), 1u);
    EXPECT_TRUE(SameTopSpectrum(limited, linear));
    EXPECT_LT(limited.analysis.elements.front().material->Gused, SoilColumn::kModulus);
}

TEST(EquivalentLinearIteration, PeakStrainsDoNotDependOnTheThreadCount) {
    SoilColumn column = StrainDependentColumn();
    column.Solve(false);
    const int saved = omp_get_max_threads();
    omp_set_num_threads(1);
    const std::vector<double> one = PeakShearStrains(column.analysis);
    omp_set_num_threads(2);
    const std::vector<double> two = PeakShearStrains(column.analysis);
    omp_set_num_threads(saved);
    EXPECT_EQ(one, two);
    EXPECT_GT(one.front(), 1e-5);
    EXPECT_EQ(one.front(), MeanPeakShearStrain(column.analysis.elements.front(), column.analysis));
}

TEST(EquivalentLinearIteration, ErrorEqualToleranceIsNotConvergence) {
    SoilColumn column = StrainDependentColumn(true);
    column.analysis.tolerance = 0.0;
    column.analysis.iterationLimit = 3;
    const std::string out = column.Solve(true).first;
    EXPECT_EQ(Count(out, "\nERROR = 0\tTOL=0\n"), 3u);
    EXPECT_NE(out.find("\n等価線形化計算 3 回目"), std::string::npos);
}

// Without iterations nothing is solved, but the spectra are sized up to the Nyquist line. An
// elastic model is solved once, with a progress line per line on standard error.
TEST(EquivalentLinearIteration, ElasticModelSolvesOnceAndNoIterationSolvesNothing) {
    SoilColumn column(4, 10);
    column.SetWave(SineBurst(), 0.01, 5.0);
    column.analysis.iterationLimit = 0;
    const auto [idleOut, idleErr] = column.Solve(true);
    EXPECT_EQ(idleOut + idleErr, "");
    for (const CNode& node : column.analysis.nodes) {
        ASSERT_EQ(node.dispX.size(), 513u);
        for (size_t i = 0; i < node.dispX.size(); ++i) EXPECT_EQ(node.dispX[i], Complex(0.0, 0.0));
    }
    column.analysis.iterationLimit = 5;
    column.analysis.waveSpectrum[4] = Complex(0.03, 0.04);
    const auto [out, err] = column.Solve(true);
    EXPECT_EQ(out, "\n等価線形化計算 1 回目");
    EXPECT_EQ(Count(err, "\rCalculate "), static_cast<size_t>(column.analysis.frequencyCount - 1));
    EXPECT_EQ(err.find('\n'), std::string::npos);
    // Line 4 of 10.24 s: 0.39 Hz, 2.45 rad/s, 10.24 |0.03 + 0.04i|.
    EXPECT_NE(err.find("\rCalculate 0.39 Hz : ωs = 2.45 FFTSpc 0.512"), std::string::npos);
}

}  // namespace
