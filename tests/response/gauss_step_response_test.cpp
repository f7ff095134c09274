#include "response/gauss_step_response.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "element/material.hpp"

namespace {

ConstitutiveMatrix Diagonal(Complex value) {
    ComplexMatrix D(4, 4);
    for (uint32_t i = 0; i < 4; ++i) D(i, i) = value;
    return ConstitutiveMatrix(D);
}

TEST(GaussStepResponse, DeviatorRemovesTheMeanOfTheNormalComponentsAndKeepsTheShear) {
    const Vector4 d = Deviator4({4.0, 1.0, -2.0, 7.0});
    EXPECT_NEAR(d[0], 3.0, 1e-15);
    EXPECT_NEAR(d[1], 0.0, 1e-15);
    EXPECT_NEAR(d[2], -3.0, 1e-15);
    EXPECT_EQ(d[3], 7.0);
}

TEST(GaussStepResponse, PureShearGivesItsMagnitudeAsBothDeviatoricNorms) {
    // With D = I the stress equals the strain: tau = gamma = -0.25, no normal part.
    const StepResponse r = EvaluateStep(Diagonal(1.0), {}, 0.0, 0.0, Complex(-0.25, 0.0));
    EXPECT_FLOAT_EQ(r.dev, 0.25f);        // sqrt(1/2) sqrt(2 tau^2)
    EXPECT_FLOAT_EQ(r.devStrain, 0.25f);  // sqrt(2) sqrt(2 (gamma/2)^2)
    EXPECT_EQ(r.mean, 0.0f);
    EXPECT_EQ(r.vol, 0.0f);
}

TEST(GaussStepResponse, ImaginaryPartsOfStrainAndModulusMeetInTheRealStress) {
    // Re((2 + 3i)(0.5 - 0.1i)) = 1.0 + 0.3
    const StepResponse r = EvaluateStep(Diagonal(Complex(2.0, 3.0)), {0.0, 0.0, 0.0, 10.0},
                                        Complex(0.5, -0.1), 0.0, Complex(0.0, 1.0));
    EXPECT_DOUBLE_EQ(r.stress[0], 1.3);
    EXPECT_DOUBLE_EQ(r.stress[3], 10.0 - 3.0);
    EXPECT_EQ(r.strain[0], 0.5);  // the strain record is the real part alone
    EXPECT_EQ(r.strain[3], 0.0);
}

TEST(GaussStepResponse, StressEqualsTheMaterialsStressFromStrain) {
    auto material = std::make_unique<DAT_Elastic>();
    for (uint32_t i = 0; i < 4; ++i)
        for (uint32_t j = 0; j < 4; ++j)
            material->D(i, j) = Complex(std::sin(1.0 + i * 4 + j), std::cos(2.0 * i - j));
    CGauss point(0.1, 0.2, 1.0);
    point.stress = RealVector{-1.5, -2.5, 0.25, 0.125};
    const ComplexVector strain{Complex(1e-3, 2e-5), Complex(-4e-4, 1e-6), 0.0,
                               Complex(3e-3, -7e-5)};
    const RealVector expected = GaussStressFromStrain(*material, strain, point);
    const StepResponse r = EvaluateStep(ConstitutiveMatrix(material->D), {-1.5, -2.5, 0.25, 0.125},
                                        strain[0], strain[1], strain[3]);
    for (int i = 0; i < 4; ++i) EXPECT_DOUBLE_EQ(r.stress[i], expected[i]) << i;
}

TEST(GaussStepResponse, PeaksTakeAbsoluteValuesAndRecordsNarrowToSingle) {
    GaussPeaks peaks;
    peaks.Update(EvaluateStep(Diagonal(1.0), {}, Complex(-0.1, 0.0), 0.2, 0.0));
    peaks.Update(EvaluateStep(Diagonal(1.0), {}, Complex(0.05, 0.0), -0.3, 0.0));
    EXPECT_EQ(peaks.strain[0], 0.1);
    EXPECT_EQ(peaks.stress[1], 0.3);
    EXPECT_EQ(peaks.vol, std::abs(static_cast<float>(0.05 - 0.3)));
    const WorkRecord record = MaxStrainRecord(peaks);
    EXPECT_EQ(record[0], 0.1f);
    EXPECT_EQ(record[2], 0.0f);
    EXPECT_EQ(record[4], peaks.vol);
}

}  // namespace
