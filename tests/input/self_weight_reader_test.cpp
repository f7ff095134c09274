#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <cmath>
#include <string>

#include "input/reader_test_support.hpp"
#include "input/self_weight_stress.hpp"
#include "support/project_fixture.hpp"

namespace {

constexpr double kPi = 3.141592653589793;

boost::shared_ptr<DAT_GHEmodel> Ghe(double phiDegrees, double c, double divisor) {
    auto m = boost::make_shared<DAT_GHEmodel>();
    m->type = 4;
    m->phi = phiDegrees / 180.0 * kPi;
    m->c = c;
    m->strengthDivisor = divisor;
    return m;
}

CElement ElementOf(boost::shared_ptr<DAT_Material> material, int points) {
    CElement element;
    element.material = material;
    element.gaussPoints.resize(static_cast<size_t>(points));
    element.gaussCount = points;
    return element;
}

// One stress line: number, sx, sy, sz, sxy and two unused values, in tf/m2.
std::string StressLine(int n, double sx, double sy, double sz, double sxy) {
    return std::to_string(n) + " " + std::to_string(sx) + " " + std::to_string(sy) + " " +
           std::to_string(sz) + " " + std::to_string(sxy) + " 0 0\n";
}

class SelfWeightReader : public testing::Test {
  protected:
    void Read(const std::string& text) {
        project.Write("output0.inp", text);
        analysis.ReadSelfWeightStress(project.Path("output0.inp"));
    }
    ProjectFolder project;
    CAnalysisData analysis;
};

TEST_F(SelfWeightReader, PointsTakeTheLinesInOrderAndTheLastPointSetsTheStrength) {
    auto elastic = boost::make_shared<DAT_Elastic>();
    elastic->type = 5;
    auto ghe = Ghe(30.0, 0.01, 2.0);
    analysis.elements.push_back(ElementOf(elastic, 4));
    analysis.elements.push_back(ElementOf(ghe, 9));
    std::string text =
        "---- node ----\n1 2 3\n---- stress ---- \n9 9 9 9 9 9 9\n---- stress ----\n";
    for (int i = 1; i <= 12; ++i) text += StressLine(i, -i, -2.0 * i, -0.5 * i, 0.25 * i);
    text += StressLine(13, -10.0, -10.0, -5.0, 0.0);

    Read(text);
    const CGauss& first = analysis.elements[0].gaussPoints[0];
    EXPECT_DOUBLE_EQ(first.stress[0], -1.0 * 9.80665 / 1000.0);
    EXPECT_DOUBLE_EQ(first.stress[1], -2.0 * 9.80665 / 1000.0);
    EXPECT_DOUBLE_EQ(first.stress[2], -0.5 * 9.80665 / 1000.0);
    EXPECT_DOUBLE_EQ(first.stress[3], 0.25 * 9.80665 / 1000.0);
    EXPECT_DOUBLE_EQ(analysis.elements[1].gaussPoints[0].stress[0], -5.0 * 9.80665 / 1000.0);
    // The ninth point of the GHE element is an even compression: p is the pressure itself.
    const double pressure = 10.0 * 9.80665 / 1000.0;
    EXPECT_DOUBLE_EQ(ghe->tauf, (pressure * std::tan(ghe->phi) + 0.01) / 2.0);
}

TEST_F(SelfWeightReader, UnreadableLinesAndMissingLinesKeepTheLineBefore) {
    auto ghe = Ghe(0.0, 0.3, 1.5);
    analysis.elements.push_back(ElementOf(ghe, 4));
    Read("---- stress ----\n" + StressLine(1, 1.0, 2.0, 3.0, 4.0) + "// not skipped\n" + "2 5.0\n");
    const auto& points = analysis.elements[0].gaussPoints;
    EXPECT_DOUBLE_EQ(points[0].stress[0], 0.00980665);
    EXPECT_DOUBLE_EQ(points[1].stress[0], 0.00980665);
    EXPECT_DOUBLE_EQ(points[2].stress[0], 5.0 * 9.80665 / 1000.0);  // a partial scan
    EXPECT_DOUBLE_EQ(points[2].stress[1], 2.0 * 9.80665 / 1000.0);
    EXPECT_DOUBLE_EQ(points[3].stress[0], 5.0 * 9.80665 / 1000.0);
    EXPECT_DOUBLE_EQ(ghe->tauf, 0.2);  // phi 0: c / divisor at any stress
}

TEST_F(SelfWeightReader, WithoutTheMarkerAllPointsStayAtZero) {
    analysis.elements.push_back(ElementOf(Ghe(30.0, 0.0, 1.0), 4));
    Read("---- stress ---- \n" + StressLine(1, 1.0, 2.0, 3.0, 4.0));
    for (const CGauss& point : analysis.elements[0].gaussPoints)
        for (int i = 0; i < 4; ++i) EXPECT_EQ(point.stress[i], 0.0);
}

TEST(GheStrength, TensionTakesTheConfinementFloor) {
    const auto ghe = Ghe(30.0, 0.05, 2.0);
    const double floor = 0.010132500000000001 * std::tan(ghe->phi);
    EXPECT_DOUBLE_EQ(GheStrength(*ghe, 0.1, 0.2, 0.0), (floor + 0.05) / 2.0);
    // Pure shear t: principal stresses +-t, p = -t sin(phi) < 0.
    EXPECT_DOUBLE_EQ(GheStrength(*ghe, 0.0, 0.0, 0.1), (floor + 0.05) / 2.0);
}

TEST(GheStrength, MohrCoulombOnTheMeanOfThePrincipalStresses) {
    const auto ghe = Ghe(30.0, 0.0, 1.0);
    // sx = -0.3, sy = -0.1, sxy = 0: s1 = 0.3, s3 = 0.1, p = 0.2 - 0.5 * 0.1.
    EXPECT_NEAR(GheStrength(*ghe, -0.3, -0.1, 0.0), 0.15 * std::tan(ghe->phi), 1e-15);
}

TEST(SelfWeightReaderDeathTest, MissingFileIsAReadingError) {
    CAnalysisData analysis;
    EXPECT_EXIT(
        {
            StdoutToStderr();
            analysis.ReadSelfWeightStress("");
        },
        testing::ExitedWithCode(0), "^自重解析:Reading error\n$");
}

}  // namespace
