// The side matrices on the section's degrees of freedom: the free-field traction of a linear
// profile on either edge, and the base handed to the thin layers.
#include <gtest/gtest.h>

#include <map>

#include "freefield/side_matrices.hpp"
#include "structured_mesh.hpp"

namespace {

// Forces on the y degrees of freedom of the edge nodes for the x motion f(y) of the edge nodes.
std::map<int, Complex> EdgeForces(const std::vector<DofEntry>& matrix,
                                  const CAnalysisData& section, double (*f)(double)) {
    std::map<int, Complex> forces;
    for (const DofEntry& e : matrix) {
        EXPECT_EQ(e.row % 2, 1);
        EXPECT_EQ(e.column % 2, 0);
        forces[e.row / 2] += e.value * f(section.nodes[e.column / 2].y);
    }
    return forces;
}

TEST(SideTraction, LinearProfileLoadsTheEdgeNodesOfEitherEdge) {
    // Two layers of 3 m: G* 40 + 4i above, 90 + 9i below.
    const std::vector<LayerState> layers = {{3.0, 1.8, Complex(40, 4), 0.3},
                                            {3.0, 2.0, Complex(90, 9), 0.3}};
    for (const int kind : {4, 8}) {
        CAnalysisData section;
        BuildStructuredMesh(SectionGrid{kind, 2, 2, 4.0, 6.0, false},
                            ElasticMaterial(40.0, 0.05, 0.3, 1.8e-3), section);
        for (const Edge edge : {Edge::kLeft, Edge::kRight}) {
            SCOPED_TRACE(testing::Message() << kind << " " << EdgeName(edge));
            SideAnalysis side;
            side.column = FindSideColumn(section, edge);
            side.response.layers = layers;
            const SideColumn& column = side.column;
            const std::vector<DofEntry> matrix = SideTractionMatrix(side);
            const double n = column.NormalX();

            // u = y: the traction n G* on each layer, shared out as the side's interpolation
            // integrates to 1: h/2 at each end of a 2-node side, h/6 and 2h/3 on a 3-node one.
            const auto linear = EdgeForces(matrix, section, [](double y) { return y; });
            const Complex top = layers[0].shearModulus, bottom = layers[1].shearModulus;
            const std::vector<int>& nodes = column.nodes;
            if (kind == 4) {
                ASSERT_EQ(nodes.size(), 3u);
                EXPECT_LT(std::abs(linear.at(nodes[0]) - n * top * 1.5), 1e-12);
                EXPECT_LT(std::abs(linear.at(nodes[1]) - n * (top + bottom) * 1.5), 1e-12);
                EXPECT_LT(std::abs(linear.at(nodes[2]) - n * bottom * 1.5), 1e-12);
            } else {
                ASSERT_EQ(nodes.size(), 5u);
                EXPECT_LT(std::abs(linear.at(nodes[0]) - n * top * 0.5), 1e-12);
                EXPECT_LT(std::abs(linear.at(nodes[1]) - n * top * 2.0), 1e-12);
                EXPECT_LT(std::abs(linear.at(nodes[2]) - n * (top + bottom) * 0.5), 1e-12);
                EXPECT_LT(std::abs(linear.at(nodes[3]) - n * bottom * 2.0), 1e-12);
            }

        }
    }
}

TEST(ThinLayerBaseOfASide, RigidOrDashpotsInBothDirections) {
    SideAnalysis side;
    side.column.edge = Edge::kRight;
    side.column.nodes = {4, 2, 0};
    SideBase& base = side.response.base;
    EXPECT_TRUE(ThinLayerBase(side).rigid);

    base.rigid = false;
    base.dashpotPerLength = Complex(1320.0, 0.0);
    base.dashpotPerLengthY = Complex(2464.0, 0.0);
    const ColumnBase thin = ThinLayerBase(side);
    EXPECT_FALSE(thin.rigid);
    EXPECT_EQ(thin.dashpotX, 1320.0);
    EXPECT_EQ(thin.dashpotY, 2464.0);

    base.fixedInY = true;
    EXPECT_EXIT(ThinLayerBase(side), testing::ExitedWithCode(2),
                "column of the right edge stands on base dashpots in x but is fixed in y");
    base.fixedInY = false;
    base.dashpotPerLengthY = Complex(2464.0, 10.0);
    EXPECT_EXIT(ThinLayerBase(side), testing::ExitedWithCode(2),
                "base dashpots of complex coefficient");
}

}  // namespace
