#include "boundary/viscous_boundary.hpp"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "boundary_test_model.hpp"

namespace {
// A "$V" row as the boundary reader builds it: terms are the coefficient times the factors,
// over 30.
boost::shared_ptr<CBCVisco> Dashpot(int code, int rowNode, int direction, Complex coefficient,
                                    std::array<double, 3> factors, std::array<int, 3> edges) {
    auto c = boost::make_shared<CBCVisco>();
    c->typeCode = code;
    c->node = c->rowNode = rowNode;
    c->direction = direction;
    c->coefficient = coefficient;
    c->term1 = coefficient * 99.0 / 30.0;
    c->term2 = coefficient * factors[0] / 30.0;
    c->term3 = coefficient * factors[1] / 30.0;
    c->term4 = coefficient * factors[2] / 30.0;
    c->edgeNode1 = edges[0];
    c->edgeNode2 = edges[1];
    c->edgeNode3 = edges[2];
    c->edgeNodeCount = edges[2] == -1 ? 2 : 3;
    return c;
}

SparseComplexMatrix Assemble(const CAnalysisData& analysis, bool sideGroup) {
    SparseComplexMatrix m(3);
    m.add(0, 0, Complex(7.0, 7.0));  // left over from before: must go
    AssembleViscousMatrix(m, analysis, sideGroup);
    return m;
}
}  // namespace

TEST(ViscousBoundary, RowWithoutThirdEdgeNodeGetsTwoTermsInItsDirection) {
    CAnalysisData model = NumberedModel(4, {});
    model.boundaryConds.push_back(Dashpot(100, 1, 0, {3.0, 0.0}, {10.0, 5.0, 20.0}, {1, 2, -1}));
    const SparseComplexMatrix m = Assemble(model, false);
    ASSERT_EQ(m.RowCount(), 8u);
    EXPECT_EQ(m.EntryCount(), 2u);
    EXPECT_EQ(m.rows[2].at(2), Complex(1.0, 0.0));  // node 1 x to node 1 x
    EXPECT_EQ(m.rows[2].at(4), Complex(0.5, 0.0));  // node 1 x to node 2 x
}

TEST(ViscousBoundary, AnyDirectionButZeroMeansYAndTermsAccumulate) {
    CAnalysisData model = NumberedModel(4, {});
    model.boundaryConds.push_back(Dashpot(101, 0, 2, {0.0, 3.0}, {3.0, 6.0, 9.0}, {0, 1, 2}));
    model.boundaryConds.push_back(Dashpot(102, 0, 1, {3.0, 0.0}, {30.0, 0.0, 0.0}, {0, 1, 2}));
    const SparseComplexMatrix m = Assemble(model, false);
    EXPECT_EQ(m.EntryCount(), 3u);
    EXPECT_EQ(m.rows[1].at(1), Complex(3.0, 0.3));
    EXPECT_EQ(m.rows[1].at(3), Complex(0.0, 0.6));
    EXPECT_EQ(m.rows[1].at(5), Complex(0.0, 0.9));
}

TEST(ViscousBoundary, FixedRowDropsTheConditionAndFixedEdgeNodeOnlyItsTerm) {
    // Node 0 x fixed, node 2 x fixed: equations are 0:0y 1:1x 2:1y 3:2y 4:3x 5:3y.
    CAnalysisData model = NumberedModel(4, {0, 4});
    model.boundaryConds.push_back(Dashpot(100, 0, 0, {1.0, 0.0}, {1.0, 1.0, 1.0}, {0, 1, 3}));
    model.boundaryConds.push_back(Dashpot(100, 1, 0, {30.0, 0.0}, {1.0, 2.0, 3.0}, {1, 2, 3}));
    const SparseComplexMatrix m = Assemble(model, false);
    EXPECT_EQ(m.EntryCount(), 2u);
    EXPECT_EQ(m.rows[1].at(1), Complex(1.0, 0.0));
    EXPECT_EQ(m.rows[1].at(4), Complex(3.0, 0.0));
}

TEST(ViscousBoundary, GroupsSplitAtCode200AndOtherConditionsAddNothing) {
    CAnalysisData model = NumberedModel(3, {});
    model.boundaryConds.push_back(boost::make_shared<CBoundaryCond>(0, 0.0, 0.0, 3));
    model.boundaryConds.push_back(Dashpot(3, 0, 0, {30.0, 0.0}, {1.0, 1.0, 1.0}, {0, 1, 2}));
    model.boundaryConds.push_back(boost::make_shared<CBoundaryCond>(0, 0.0, 0.0, 150));
    model.boundaryConds.push_back(Dashpot(199, 0, 0, {30.0, 0.0}, {1.0, 0.0, 0.0}, {0, 1, -1}));
    model.boundaryConds.push_back(Dashpot(200, 1, 0, {30.0, 0.0}, {2.0, 0.0, 0.0}, {1, 2, -1}));
    model.boundaryConds.push_back(Dashpot(202, 2, 1, {30.0, 0.0}, {4.0, 0.0, 0.0}, {2, 1, -1}));
    const SparseComplexMatrix base = Assemble(model, false);
    EXPECT_EQ(base.EntryCount(), 2u);
    EXPECT_EQ(base.rows[0].at(0), Complex(1.0, 0.0));
    const SparseComplexMatrix side = Assemble(model, true);
    EXPECT_EQ(side.EntryCount(), 4u);
    EXPECT_EQ(side.rows[2].at(2), Complex(2.0, 0.0));
    EXPECT_EQ(side.rows[5].at(5), Complex(4.0, 0.0));
}

// Two rows of the consistent dashpot matrix of a linear edge of length L, c L / 6 [2 1; 1 2]:
// the matrix is symmetric and its entries sum to c L, the whole edge's dashpot.
TEST(ViscousBoundary, LinearEdgeFactorsGiveTheConsistentEdgeDashpot) {
    const double c = 2.4, length = 1.5;
    CAnalysisData model = NumberedModel(2, {1, 3});  // x only
    const Complex cl(c * length, 0.0);
    model.boundaryConds.push_back(Dashpot(100, 0, 0, cl, {10.0, 5.0, 0.0}, {0, 1, -1}));
    model.boundaryConds.push_back(Dashpot(100, 1, 0, cl, {10.0, 5.0, 0.0}, {1, 0, -1}));
    const SparseComplexMatrix m = Assemble(model, false);
    Complex total;
    for (const auto& row : m.rows)
        for (const auto& [j, v] : row) total += v;
    EXPECT_NEAR(total.real(), c * length, 1e-12);
    EXPECT_DOUBLE_EQ(m.rows[0].at(1).real(), m.rows[1].at(0).real());
    EXPECT_NEAR(m.rows[0].at(0).real(), c * length / 3.0, 1e-12);
}

TEST(ViscousBoundaryDeathTest, EdgeNodeOutsideTheNodeListStopsAsBadInput) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    CAnalysisData model = NumberedModel(3, {});
    model.boundaryConds.push_back(boost::make_shared<CBoundaryCond>(0, 0.0, 0.0, 3));
    model.boundaryConds.push_back(Dashpot(100, 0, 0, {1.0, 0.0}, {1.0, 1.0, 1.0}, {0, 1, 3}));
    EXPECT_EXIT(Assemble(model, false), testing::ExitedWithCode(2),
                "boundary conditions:2: .*node 3");
}
