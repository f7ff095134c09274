#include "element/material.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "element/constant_operators.hpp"

namespace {

DAT_Elastic Elastic(double G, double h, double nu) {
    DAT_Elastic m;
    m.G0 = m.G = G;
    m.h = h;
    m.nu = nu;
    m.UpdateModuli();
    return m;
}

TEST(Material, ComplexModulusKeepsItsAmplitudeAndPointStressAddsTheInitialStress) {
    BuildConstantOperators();
    const DAT_Elastic m = Elastic(100.0, 0.1, 0.25);
    EXPECT_DOUBLE_EQ(m.Gstar.real(), 100.0 * (1 - 2 * 0.01));
    EXPECT_DOUBLE_EQ(m.Gstar.imag(), 2 * 0.1 * 100.0 * std::sqrt(1 - 0.01));
    EXPECT_NEAR(std::abs(m.Gstar), 100.0, 1e-12);
    EXPECT_DOUBLE_EQ(m.E, 250.0);
    EXPECT_EQ(Elastic(100.0, 1.0, 0.3).Gstar, Complex(-100.0, 0.0));
    // Lame's lambda = 2 nu G / (1 - 2 nu) on the complex modulus; shear decoupled.
    const Complex lambda = 0.25 * 2.0 * m.Gstar / 0.5;
    EXPECT_NEAR(std::abs(m.LambdaStar - lambda) + std::abs(m.Gdstar - m.Gstar), 0.0, 1e-12);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            const Complex expected = i == 3 || j == 3 ? (i == j ? m.Gstar : 0.0)
                                     : i == j         ? lambda + 2.0 * m.Gstar
                                                      : lambda;
            EXPECT_NEAR(std::abs(m.D(i, j) - expected), 0.0, 1e-12) << i << j;
        }
    // The stress of a point: the real part of D eps plus the point's initial stress.
    CGauss point;
    point.stress = RealVector{-1.0, -2.0, -3.0, 0.5};
    const ComplexVector strain{1e-3, 0.0, 0.0, Complex(2e-3, 1e-3)};
    const RealVector stress = GaussStressFromStrain(m, strain, point);
    const Complex normal = (lambda + 2.0 * m.Gstar) * 1e-3, lateral = lambda * 1e-3;
    EXPECT_DOUBLE_EQ(stress[0], normal.real() - 1.0);
    EXPECT_DOUBLE_EQ(stress[1], lateral.real() - 2.0);
    EXPECT_DOUBLE_EQ(stress[3], (m.Gstar * Complex(2e-3, 1e-3)).real() + 0.5);
}

TEST(Material, HyperbolicModelIsThePlainHyperbolaInEitherStrainSign) {
    DAT_GHEmodel m;
    m.G0 = 50.0;
    m.tauf = 0.05;  // reference strain 1e-3
    m.C1at0 = m.C1atInf = m.C2at0 = m.C2atInf = 1.0;
    m.beta1 = m.beta2 = 2.0;
    m.hmax = 0.25;
    m.hExponent = 1.5;
    m.isHyperbolic = true;
    EXPECT_DOUBLE_EQ(m.CalcG(1e-3), 0.5);
    EXPECT_DOUBLE_EQ(m.CalcG(-3e-3), 0.25);
    EXPECT_DOUBLE_EQ(m.CalcH(3e-3), 0.25 * std::pow(0.75, 1.5));
    EXPECT_EQ(m.CalcH(0.0), 0.0);  // hmax times a power of zero

    // One C value off unity: the cosine transitions, CalcG(0) is C1at0.
    m.isHyperbolic = false;
    m.C1at0 = 1.00002;
    m.C2at0 = 0.8;
    m.C2atInf = 1.5;
    EXPECT_DOUBLE_EQ(m.CalcG(0.0), 1.00002);
    // Strain 1e-3 is one reference strain: the cosines stand at pi / 3.
    const double C1 = 0.5 * 0.00001 + 1.00001, C2 = 0.5 * (0.8 - 1.5) / 2 + (1.5 + 0.8) / 2;
    EXPECT_DOUBLE_EQ(m.CalcG(1e-3), 1 / (1 / C2 + 1 / C1));
    // The sign of the strain stays in the cosines: at x = -1 they stand at -pi.
    EXPECT_NEAR(m.CalcG(-1e-3), 1 / (1 / 1.5 + 1 / 1.0), 1e-12);
}

TEST(Material, TableUsesTheSegmentBeginningAtTheNextAbscissaAndAFloor) {
    DAT_Othermoel m;
    m.strainTable = {1e-6, 1e-5, 1e-4};
    m.gTable = {1.0, 0.9, 0.5};
    m.hTable = {0.02, 0.05, 0.15};
    // 5e-6 lies in the first interval but is read from the second segment, extrapolated back.
    EXPECT_DOUBLE_EQ(m.CalcG(5e-6), 0.9 + (0.5 - 0.9) / (1e-4 - 1e-5) * (5e-6 - 1e-5));
    EXPECT_DOUBLE_EQ(m.CalcH(5e-6), 0.05 + (0.15 - 0.05) / (1e-4 - 1e-5) * (5e-6 - 1e-5));
    EXPECT_EQ(m.CalcG(1e-5), 0.9);
    // Below the first abscissa: the first segment, extrapolated; no flat end.
    EXPECT_DOUBLE_EQ(m.CalcG(0.0), 1.0 + (0.9 - 1.0) / (1e-5 - 1e-6) * (0.0 - 1e-6));
    EXPECT_DOUBLE_EQ(m.CalcH(2e-4), 0.05 + (0.15 - 0.05) / (1e-4 - 1e-5) * (2e-4 - 1e-5));
    // A value below zero is floored; zero itself is kept.
    EXPECT_EQ(m.CalcG(1e-3), 0.0001);
    m.hTable = {0.0, 0.05, 0.15};
    EXPECT_EQ(m.CalcH(0.0), 0.0001);
    EXPECT_EQ(TableLookup({0.0, 1.0}, {0.0, 1.0}, 0.0), 0.0);
}

}  // namespace
