#include "model/self_weight_stress.hpp"
#include "support/reader_test_support.hpp"

namespace {

constexpr double kTf = 9.80665 / 1000.0;  // MPa in one tf/m2

boost::shared_ptr<DAT_GHEmodel> Ghe(double phiDegrees, double c, double divisor) {
    auto m = boost::make_shared<DAT_GHEmodel>();
    m->type = MaterialModel::kHyperbolic;
    m->phi = phiDegrees / 180.0 * std::numbers::pi;
    m->c = c;
    m->strengthDivisor = divisor;
    return m;
}

// One stress line: number, sx, sy, sz, sxy and two unused values, in tf/m2.
std::string StressLine(int n, double sx, double sy, double sz, double sxy) {
    return std::to_string(n) + " " + std::to_string(sx) + " " + std::to_string(sy) + " " +
           std::to_string(sz) + " " + std::to_string(sxy) + " 0 0\n";
}

class SelfWeightReader : public ReaderTest {
  protected:
    void AddElement(boost::shared_ptr<DAT_Material> material, int points) {
        CElement& e = analysis.elements.emplace_back();
        e.material = material;
        e.gaussPoints.resize(static_cast<size_t>(points));
        e.gaussCount = points;
    }
    void Read(const std::string& text) {
        ReadSelfWeightStress(analysis, File("output0.inp", text));
    }
    const CGauss& Point(size_t e, size_t p) const { return analysis.elements[e].gaussPoints[p]; }
};

TEST_F(SelfWeightReader, PointsTakeTheLinesInOrderAndTheNinthPointSetsTheStrength) {
    auto elastic = boost::make_shared<DAT_Elastic>();
    elastic->type = MaterialModel::kElastic;
    auto ghe = Ghe(30.0, 0.01, 2.0);
    AddElement(elastic, 4);
    AddElement(ghe, 9);
    std::string text =
        "---- node ----\n1 2 3\n---- stress ---- \n9 9 9 9 9 9 9\n---- stress ----\n";
    for (int i = 1; i <= 12; ++i) text += StressLine(i, -i, -2.0 * i, -0.5 * i, 0.25 * i);
    Read(text + StressLine(13, -10.0, -10.0, -5.0, 0.0));
    for (int i = 0; i < 4; ++i)
        EXPECT_DOUBLE_EQ(Point(0, 0).stress[i], (RealVector{-1.0, -2.0, -0.5, 0.25})[i] * kTf);
    EXPECT_DOUBLE_EQ(Point(1, 0).stress[0], -5.0 * kTf);
    // The ninth point of the GHE element is an even compression: p is the pressure itself.
    EXPECT_DOUBLE_EQ(ghe->tauf, (10.0 * kTf * std::tan(ghe->phi) + 0.01) / 2.0);
}

TEST_F(SelfWeightReader, UnreadableLinesKeepTheLineBeforeAndTheBlockEndsAtTheNextBanner) {
    Read("no marker: a mesh without points needs no line\n");

    auto ghe = Ghe(0.0, 0.3, 1.5);
    AddElement(ghe, 4);
    Read("---- stress ----\n" + StressLine(1, 1.0, 2.0, 3.0, 4.0) +
         "// not skipped\n2 5.0\n\n---- strain ----\n" + StressLine(5, 9.0, 9.0, 9.0, 9.0));
    EXPECT_DOUBLE_EQ(Point(0, 0).stress[0], kTf);
    EXPECT_DOUBLE_EQ(Point(0, 1).stress[0], kTf);
    EXPECT_DOUBLE_EQ(Point(0, 2).stress[0], 5.0 * kTf);  // a partial scan
    EXPECT_DOUBLE_EQ(Point(0, 2).stress[1], 2.0 * kTf);
    EXPECT_DOUBLE_EQ(Point(0, 3).stress[0], 5.0 * kTf);  // an empty line
    EXPECT_DOUBLE_EQ(ghe->tauf, 0.2);                    // phi 0: c / divisor at any stress
    EXPECT_EQ(analysis.sources.selfWeightLines, (std::vector<int>{2, 3, 4, 5}));
}

TEST(GheStrength, MohrCoulombOnTheMeanPrincipalStressWithAFloorUnderTension) {
    const auto ghe = Ghe(30.0, 0.05, 2.0);
    const double floor = 0.010132500000000001 * std::tan(ghe->phi);
    EXPECT_DOUBLE_EQ(GheStrength(*ghe, 0.1, 0.2, 0.0), (floor + 0.05) / 2.0);
    // Pure shear t: principal stresses +-t, p = -t sin(phi) < 0.
    EXPECT_DOUBLE_EQ(GheStrength(*ghe, 0.0, 0.0, 0.1), (floor + 0.05) / 2.0);
    // sx = -0.3, sy = -0.1, sxy = 0: s1 = 0.3, s3 = 0.1, p = 0.2 - 0.5 * 0.1.
    EXPECT_NEAR(GheStrength(*Ghe(30.0, 0.0, 1.0), -0.3, -0.1, 0.0), 0.15 * std::tan(ghe->phi),
                1e-15);
}

}  // namespace
