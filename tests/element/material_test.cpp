#include "element/material.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "element/constant_operators.hpp"

namespace {

class MaterialTest : public testing::Test {
  protected:
    void SetUp() override { BuildConstantOperators(); }

    static DAT_Elastic Elastic(double G, double h, double nu) {
        DAT_Elastic m;
        m.G0 = m.G = G;
        m.h = h;
        m.nu = nu;
        m.UpdateModuli();
        return m;
    }

    static DAT_GHEmodel Hyperbolic() {
        DAT_GHEmodel m;
        m.G0 = 50.0;
        m.tauf = 0.05;  // reference strain 1e-3
        m.C1at0 = m.C1atInf = m.C2at0 = m.C2atInf = 1.0;
        m.beta1 = m.beta2 = 2.0;
        m.hmax = 0.25;
        m.hExponent = 1.5;
        m.isHyperbolic = true;
        return m;
    }

    static DAT_Othermoel Table() {
        DAT_Othermoel m;
        m.strainTable = {1e-6, 1e-5, 1e-4};
        m.gTable = {1.0, 0.9, 0.5};
        m.hTable = {0.02, 0.05, 0.15};
        return m;
    }
};

TEST_F(MaterialTest, ComplexShearModulusKeepsItsAmplitude) {
    const DAT_Elastic m = Elastic(100.0, 0.1, 0.3);
    EXPECT_DOUBLE_EQ(m.Gstar.real(), 100.0 * (1 - 2 * 0.01));
    EXPECT_DOUBLE_EQ(m.Gstar.imag(), 2 * 0.1 * 100.0 * std::sqrt(1 - 0.01));
    EXPECT_NEAR(std::abs(m.Gstar), 100.0, 1e-12);
    EXPECT_DOUBLE_EQ(m.E, 260.0);
    EXPECT_EQ(m.Gused, 100.0);
    EXPECT_EQ(m.hUsed, 0.1);
    EXPECT_EQ(m.nuUsed, 0.3);

    const DAT_Elastic full = Elastic(100.0, 1.0, 0.3);
    EXPECT_EQ(full.Gstar, Complex(-100.0, 0.0));
}

TEST_F(MaterialTest, ConstitutiveMatrixIsThePlaneStrainLawOnComplexModuli) {
    const DAT_Elastic m = Elastic(100.0, 0.05, 0.25);
    const Complex lambda = 0.25 * 2.0 * m.Gstar / 0.5;
    EXPECT_NEAR(std::abs(m.LambdaStar - lambda), 0.0, 1e-12);
    EXPECT_NEAR(std::abs(m.Gdstar - m.Gstar), 0.0, 1e-12);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            const Complex expected = i == j ? lambda + 2.0 * m.Gstar : lambda;
            EXPECT_NEAR(std::abs(m.D(i, j) - expected), 0.0, 1e-12) << i << j;
        }
    EXPECT_NEAR(std::abs(m.D(3, 3) - m.Gstar), 0.0, 1e-12);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(m.D(i, 3), Complex(0.0));
        EXPECT_EQ(m.D(3, i), Complex(0.0));
    }
}

TEST_F(MaterialTest, NoDampingGivesARealMatrixAndNoPoissonEffectNoLame) {
    const DAT_Elastic m = Elastic(80.0, 0.0, 0.0);
    EXPECT_EQ(m.Gstar, Complex(80.0, 0.0));
    EXPECT_EQ(m.LambdaStar, Complex(0.0, 0.0));
    for (const Complex& d : m.D.data) EXPECT_EQ(d.imag(), 0.0);
    EXPECT_DOUBLE_EQ(m.D(0, 0).real(), 160.0);
}

TEST_F(MaterialTest, ElasticAnswersItsInitialModulusAndDampingInUse) {
    DAT_Elastic m = Elastic(70.0, 0.03, 0.3);
    EXPECT_EQ(m.CalcG(1e-3), 70.0);
    EXPECT_EQ(m.CalcH(1e-3), 0.03);
}

TEST_F(MaterialTest, HyperbolicModelIsThePlainHyperbolaInEitherStrainSign) {
    DAT_GHEmodel m = Hyperbolic();
    EXPECT_DOUBLE_EQ(m.CalcG(1e-3), 0.5);
    EXPECT_DOUBLE_EQ(m.CalcG(-3e-3), 0.25);
    EXPECT_DOUBLE_EQ(m.CalcH(3e-3), 0.25 * std::pow(0.75, 1.5));
    EXPECT_EQ(m.CalcH(0.0), 0.0);  // hmax times a power of zero
}

TEST_F(MaterialTest, ModelWithOneCurveOffUnityFollowsTheCosineTransitions) {
    DAT_GHEmodel m = Hyperbolic();
    m.isHyperbolic = false;
    m.C1at0 = 1.00002;
    m.C1atInf = 1.0;
    m.C2at0 = 0.8;
    m.C2atInf = 1.5;
    EXPECT_DOUBLE_EQ(m.CalcG(0.0), 1.00002);
    // Strain 1e-3 is one reference strain: the cosines stand at pi / 3.
    const double C1 = 0.5 * 0.00001 + 1.00001;
    const double C2 = 0.5 * (0.8 - 1.5) / 2 + (1.5 + 0.8) / 2;
    EXPECT_DOUBLE_EQ(m.CalcG(1e-3), 1 / (1 / C2 + 1 / C1));
    // The sign of the strain stays in the cosines: at x = -1 they stand at -pi.
    EXPECT_NEAR(m.CalcG(-1e-3), 1 / (1 / 1.5 + 1 / 1.0), 1e-12);
}

TEST_F(MaterialTest, TableUsesTheSegmentBeginningAtTheNextAbscissa) {
    DAT_Othermoel m = Table();
    // 5e-6 lies in the first interval but is read from the second segment, extrapolated back.
    EXPECT_DOUBLE_EQ(m.CalcG(5e-6), 0.9 + (0.5 - 0.9) / (1e-4 - 1e-5) * (5e-6 - 1e-5));
    EXPECT_DOUBLE_EQ(m.CalcH(5e-6), 0.05 + (0.15 - 0.05) / (1e-4 - 1e-5) * (5e-6 - 1e-5));
    EXPECT_EQ(m.CalcG(1e-5), 0.9);
    // Below the first abscissa: the first segment, extrapolated; no flat end.
    EXPECT_DOUBLE_EQ(m.CalcG(0.0), 1.0 + (0.9 - 1.0) / (1e-5 - 1e-6) * (0.0 - 1e-6));
    EXPECT_DOUBLE_EQ(m.CalcH(2e-4), 0.05 + (0.15 - 0.05) / (1e-4 - 1e-5) * (2e-4 - 1e-5));
}

TEST_F(MaterialTest, TableValueBelowZeroIsFloored) {
    DAT_Othermoel m = Table();
    EXPECT_EQ(m.CalcG(1e-3), 0.0001);
    m.hTable = {0.0, 0.05, 0.15};
    EXPECT_EQ(m.CalcH(0.0), 0.0001);
    EXPECT_EQ(TableLookup({0.0, 1.0}, {0.0, 1.0}, 0.0), 0.0);  // zero itself is kept
}

TEST_F(MaterialTest, CloneIsADeepCopy) {
    DAT_Othermoel m = Table();
    std::unique_ptr<DAT_Material> copy(m.Clone());
    static_cast<DAT_Othermoel&>(*copy).gTable[1] = 0.1;
    EXPECT_EQ(m.gTable[1], 0.9);
    EXPECT_EQ(copy->type, m.type);
}

TEST_F(MaterialTest, GaussStressAddsTheInitialStressToTheRealPart) {
    const DAT_Elastic m = Elastic(100.0, 0.2, 0.0);
    CGauss point;
    point.stress = RealVector{-1.0, -2.0, -3.0, 0.5};
    const ComplexVector strain{Complex(1e-3, 0), Complex(0, 0), Complex(0, 0), Complex(2e-3, 1e-3)};
    const RealVector stress = GaussStressFromStrain(m, strain, point);
    EXPECT_DOUBLE_EQ(stress[0], 2 * m.Gstar.real() * 1e-3 - 1.0);
    EXPECT_DOUBLE_EQ(stress[1], -2.0);
    EXPECT_DOUBLE_EQ(stress[3], (m.Gstar * Complex(2e-3, 1e-3)).real() + 0.5);
}

}  // namespace
