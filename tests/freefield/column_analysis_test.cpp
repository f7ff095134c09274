// The free-field column against the closed form of a uniform damped layer, on a rigid base and
// on a dashpot base, and the base condition the column takes from the section.
#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <cmath>

#include "freefield/column_analysis.hpp"
#include "solve/solution_stage.hpp"
#include "support/soil_column.hpp"

namespace {

constexpr double kPi = 3.14159265358979323846;

// A decaying sine of 512 samples at 0.01 s; lines up to 10 Hz.
std::vector<double> Wave() {
    std::vector<double> acc(512, 0.0);
    for (int k = 0; k < 300; ++k) acc[k] = std::sin(0.9 * k) * std::exp(-0.01 * k);
    return acc;
}

// Relative surface displacement per unit base acceleration of a uniform layer of depth H:
// G* u'' + rho w^2 u = rho, u'(0) = 0 at the surface and, at the base, u(H) = 0 (rigid) or
// G* u'(H) = -i w c u(H) (dashpots c per unit area). u = 1/w^2 + A cos(k z).
Complex ClosedFormSurface(double w, Complex shear, double rho, double H, bool rigid, Complex c) {
    const Complex k = w * std::sqrt(rho / shear);
    const Complex A = rigid ? -1.0 / (w * w * std::cos(k * H))
                            : Complex(0.0, 1.0) * c / w /
                                  (shear * k * std::sin(k * H) -
                                   Complex(0.0, w) * c * std::cos(k * H));
    return 1.0 / (w * w) + A;
}

TEST(ColumnAnalysis, UniformLayerFollowsTheClosedFormOnBothBases) {
    struct Case {
        int nodesPerElement;
        int layers;
        bool rigid;
    };
    // The base dashpot of an elastic rock twice as stiff in wave speed: c = rho_r Vs_r.
    const double rockSpeed = 2.0 * std::sqrt(SoilColumn::kModulus / SoilColumn::kDensity);
    const Complex dashpot(1.2 * SoilColumn::kDensity * rockSpeed, 0.0);
    for (const Case c : {Case{4, 40, true}, Case{8, 12, true}, Case{4, 40, false},
                         Case{8, 12, false}}) {
        SCOPED_TRACE(testing::Message() << c.nodesPerElement << (c.rigid ? " rigid" : " dashpot"));
        SoilColumn section(c.nodesPerElement, c.layers);
        section.SetWave(Wave(), 0.01, 10.0);
        const SideColumn column = FindSideColumn(section.analysis, Edge::kLeft);
        SideBase base;
        base.rigid = c.rigid;
        base.dashpotPerLength = dashpot;
        ColumnModel model;
        BuildColumnModel(section.analysis, column, base, 1.0, model);
        SolveCapturingConsole(model.analysis, false, "");

        const ComplexVector& u = model.analysis.nodes[model.edgeNodeAt.front()].dispX;
        const double T = 512 * 0.01;
        const Complex shear = section.analysis.elements[0].material->Gstar;
        double difference = 0.0, reference = 0.0;
        for (int i = 1; i < section.analysis.frequencyCount; ++i) {
            const double w = 2.0 * kPi * i / T;
            const Complex exact = ClosedFormSurface(w, shear, SoilColumn::kDensity,
                                                    SoilColumn::kDepth, c.rigid, dashpot);
            // Absolute acceleration per unit base acceleration: 1 - w^2 u.
            difference += std::norm(w * w * (u[i] - exact));
            reference += std::norm(1.0 - w * w * exact);
        }
        EXPECT_LT(std::sqrt(difference / reference), 0.005);
        // The side nodes of the column move as its edge nodes: it shears alike across.
        const int right = model.edgeNodeAt.front() + (c.nodesPerElement == 4 ? 1 : 2);
        EXPECT_NEAR(std::abs(model.analysis.nodes[right].dispX[7] - u[7]), 0.0,
                    1e-9 * std::abs(u[7]));
    }
}

// A 4-node section of 3 x 2 cells whose base nodes (x = 0, 2, 4, 6) are free in x and carry
// dashpot rows as a boundary file gives them: 0.2 to each neighbour and 0.4 to the node itself
// (0.2 at the ends), 2.4 in all over 6 m of base.
CAnalysisData DashpotSection(bool dashpotUnderTheCorner) {
    CAnalysisData section;
    BuildStructuredMesh(SectionGrid{4, 3, 2, 6.0, 4.0, false},
                        ElasticMaterial(40.0, 0.05, 0.3, 1.8e-3), section);
    for (int n = 0; n < 4; ++n) section.dofFixed[2 * n] = 0;
    const Complex c(0.6, 0.0);
    for (int n = dashpotUnderTheCorner ? 0 : 1; n < 4; ++n) {
        auto visco = boost::make_shared<CBCVisco>();
        visco->typeCode = 101;
        visco->rowNode = visco->node = n;
        visco->direction = 0;
        visco->coefficient = c;
        if (n == 0 || n == 3) {
            visco->edgeNodeCount = 2;
            visco->edgeNode1 = n == 0 ? 0 : 2;
            visco->edgeNode2 = n == 0 ? 1 : 3;
            visco->edgeNode3 = -1;
            visco->term2 = visco->term3 = c * (10.0 / 30.0);
        } else {
            visco->edgeNodeCount = 3;
            visco->edgeNode1 = n - 1;
            visco->edgeNode2 = n;
            visco->edgeNode3 = n + 1;
            visco->term2 = visco->term4 = c * (10.0 / 30.0);
            visco->term3 = c * (20.0 / 30.0);
        }
        section.boundaryConds.push_back(visco);
        // A y row, which the column does not take.
        auto vertical = boost::make_shared<CBCVisco>(*visco);
        vertical->direction = 1;
        vertical->term2 *= 100.0;
        section.boundaryConds.push_back(vertical);
    }
    return section;
}

TEST(ColumnAnalysis, BaseConditionComesFromTheSection) {
    CAnalysisData rigid;
    BuildStructuredMesh(SectionGrid{4, 3, 2, 6.0, 4.0, false},
                        ElasticMaterial(40.0, 0.05, 0.3, 1.8e-3), rigid);
    EXPECT_TRUE(FindColumnBase(rigid, FindSideColumn(rigid, Edge::kRight)).rigid);

    // 2.4 over 6 m: 0.4 per metre, whichever edge.
    const CAnalysisData dashpots = DashpotSection(true);
    for (const Edge edge : {Edge::kLeft, Edge::kRight}) {
        const SideBase base = FindColumnBase(dashpots, FindSideColumn(dashpots, edge));
        EXPECT_FALSE(base.rigid);
        EXPECT_NEAR(base.dashpotPerLength.real(), 0.4, 1e-12);
        EXPECT_EQ(base.dashpotPerLength.imag(), 0.0);
        // The y rows: the first term of each a hundred times larger, 81.6 over 6 m.
        EXPECT_NEAR(base.dashpotPerLengthY.real(), 13.6, 1e-12);
        EXPECT_TRUE(base.fixedInY);
    }

    const CAnalysisData floating = DashpotSection(false);
    EXPECT_EXIT(FindColumnBase(floating, FindSideColumn(floating, Edge::kLeft)),
                testing::ExitedWithCode(2),
                "bottom node of the left edge \\(node 1\\) is neither fixed in x nor held by a "
                "base dashpot");
}

}  // namespace
