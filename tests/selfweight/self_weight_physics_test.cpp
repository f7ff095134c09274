// The self-weight analysis against closed forms: laterally confined columns, uniform and
// layered, by both methods, and the balance of sloping and valley sections.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "selfweight/gravity_method.hpp"
#include "selfweight/k0_method.hpp"
#include "static_section.hpp"

namespace {

// g times the density integrated from the surface down to a depth, through the layers (MPa).
double ClosedFormOverburden(const std::vector<SoilLayer>& layers, double depth) {
    double weight = 0.0, top = 0.0;
    for (const SoilLayer& layer : layers) {
        const double bottom = top + layer.thickness;
        weight += layer.density * kStandardGravity * std::max(0.0, std::min(depth, bottom) - top);
        top = bottom;
    }
    return weight;
}

struct ColumnCase {
    std::string name;
    int nodesPerElement;
    bool gravity;
    std::vector<SoilLayer> layers;  // from the surface down; 20 m in all
    double tolerance;               // relative, at every point
};

// A column one element wide, 20 elements of 1 m deep, roller sides and a fixed base: under its
// own weight the vertical stress is the overburden and the horizontal stresses are K0 times it.
// The 4-node element has a constant strain through its depth in this column: its points carry
// the stress of the element's centre, which is exact there.
TEST(SelfWeightColumn, VerticalStressIsTheOverburdenAndHorizontalIsK0TimesIt) {
    const std::vector<SoilLayer> uniform = {{20.0, 60.0, 0.3, 1.8e-3}};
    const std::vector<SoilLayer> layered = {
        {4.0, 40.5, 0.40, 1.8e-3}, {8.0, 68.0, 0.45, 1.7e-3}, {8.0, 180.0, 0.35, 2.0e-3}};
    const ColumnCase cases[] = {
        {"gravity 8-node", 8, true, uniform, 1e-8},
        {"gravity 6-node", 6, true, uniform, 1e-8},
        {"gravity 4-node", 4, true, uniform, 1e-8},
        {"k0 8-node", 8, false, uniform, 1e-12},
        {"k0 6-node", 6, false, uniform, 1e-12},
        {"k0 4-node", 4, false, uniform, 1e-12},
        {"gravity layered 8-node", 8, true, layered, 1e-8},
        {"gravity layered 4-node", 4, true, layered, 1e-8},
        {"k0 layered 6-node", 6, false, layered, 1e-12},
        {"k0 layered 4-node", 4, false, layered, 1e-12},
    };
    for (const ColumnCase& c : cases) {
        SCOPED_TRACE(c.name);
        const SectionGrid grid{c.nodesPerElement, 1, 20, 1.0, 20.0, false};
        CAnalysisData analysis;
        BuildStaticSection(grid, c.layers, analysis);
        const SelfWeightState state =
            c.gravity ? GravityAnalysis(analysis) : GeostaticAnalysis(analysis);
        const auto places = PointPositions(analysis);
        const double scale = ClosedFormOverburden(c.layers, grid.depth);
        for (size_t e = 0; e < analysis.elements.size(); ++e) {
            const CElement& element = analysis.elements[e];
            const double nu = element.material->nu;
            const double centre =
                0.5 * (analysis.nodes[element.nodes[0]].y + analysis.nodes[element.nodes[2]].y);
            ASSERT_EQ(state.points[e].size(), element.gaussPoints.size());
            for (size_t g = 0; g < places[e].size(); ++g) {
                const bool constantStrain = c.gravity && c.nodesPerElement == 4;
                const double y = constantStrain ? centre : places[e][g][1];
                const double vertical = -ClosedFormOverburden(c.layers, grid.depth - y);
                const Vector4& s = state.points[e][g].stress;
                const double allowed = c.tolerance * std::abs(vertical) + 1e-12 * scale;
                EXPECT_NEAR(s[1], vertical, allowed) << "element " << e + 1 << " point " << g + 1;
                EXPECT_NEAR(s[0], nu / (1 - nu) * vertical, allowed);
                EXPECT_NEAR(s[2], nu / (1 - nu) * vertical, allowed);
                EXPECT_NEAR(s[3], 0.0, 1e-12 * scale);
            }
        }
    }
}

struct SectionCase {
    std::string name;
    int nodesPerElement;
    bool valley;  // a V-shaped valley; otherwise a surface sloping down to the right
};

// Sections 40 m wide, 10 m deep at the left side; the slope falls to 5 m at the right, the
// valley to 6 m in the middle. The support reactions carry the whole weight.
TEST(SelfWeightSection, SupportReactionsBalanceTheWeight) {
    constexpr double kWidth = 40.0, kDepth = 10.0, kDensity = 1.9e-3;
    const SectionCase cases[] = {{"slope 4-node", 4, false}, {"slope 8-node", 8, false},
                                 {"slope 6-node", 6, false}, {"valley 4-node", 4, true},
                                 {"valley 8-node", 8, true}, {"valley 6-node", 6, true}};
    for (const SectionCase& c : cases) {
        SCOPED_TRACE(c.name);
        const SectionGrid grid{c.nodesPerElement, 8, 4, kWidth, kDepth, false};
        CAnalysisData analysis;
        BuildStaticSection(grid, {{kDepth, 50.0, 0.33, kDensity}}, analysis);
        const auto slope = [&](double x) { return kDepth * (1.0 - 0.5 * x / kWidth); };
        const auto valley = [&](double x) {
            return kDepth - 4.0 * (1.0 - std::abs(2.0 * x / kWidth - 1.0));
        };
        ShapeSurface(analysis, kDepth, c.valley ? std::function<double(double)>(valley) : slope);
        const double area =
            c.valley ? kWidth * kDepth - 4.0 * kWidth / 2.0 : kWidth * 0.75 * kDepth;
        const double weight = kDensity * kStandardGravity * area;

        const StaticBalance balance = GravityAnalysis(analysis).balance;
        EXPECT_NEAR(balance.weight, weight, 1e-12 * weight);
        EXPECT_NEAR(balance.reactionY, weight, 1e-9 * weight);
        EXPECT_NEAR(balance.reactionX, 0.0, 1e-9 * weight);
        EXPECT_LT(balance.largestResidual, 1e-9 * weight);
    }
}

}  // namespace
