#include "boundary/viscous_boundary.hpp"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "boundary_test_model.hpp"
#include "support/project_fixture.hpp"

namespace {
// The viscous matrix of a group, from boundary lines as the boundary file gives them.
SparseComplexMatrix FromBoundaryLines(CAnalysisData& model, const std::string& lines,
                                      bool sideGroup) {
    ProjectFolder folder;
    folder.Write("boundary.dat", lines);
    model.boundaryConds.clear();
    model.ReadBoundary(model.boundaryConds, folder.Path("boundary.dat"));
    SparseComplexMatrix m(3);
    m.add(0, 0, Complex(7.0, 7.0));  // left over from before: must go
    AssembleViscousMatrix(m, model, sideGroup);
    return m;
}
}  // namespace

// Without a third edge node a row gets two terms; a direction other than 0 means y; terms on
// one place add up.
TEST(ViscousBoundary, RowsTakeTheirTermsInTheirDirectionAndTermsAccumulate) {
    CAnalysisData model = NumberedModel(4, {});
    const auto m = FromBoundaryLines(model,
                                     // code node dir  re im  f1 f2 f3 f4  edges
                                     "$VISCO 100 1 0  3 0  8 10 5 20  1 2 -1\n"
                                     "$VISCO 101 0 2  0 3  1 3 6 9  0 1 2\n"
                                     "$VISCO 102 0 1  3 0  1 30 0 0  0 1 2\n",
                                     false);
    ASSERT_EQ(m.RowCount(), 8u);
    EXPECT_EQ(m.EntryCount(), 5u);
    EXPECT_EQ(m.rows[2].at(2), Complex(1.0, 0.0));  // node 1 x to node 1 x
    EXPECT_EQ(m.rows[2].at(4), Complex(0.5, 0.0));  // node 1 x to node 2 x
    EXPECT_EQ(m.rows[1].at(1), Complex(3.0, 0.3));
    EXPECT_EQ(m.rows[1].at(3), Complex(0.0, 0.6));
    EXPECT_EQ(m.rows[1].at(5), Complex(0.0, 0.9));
}

TEST(ViscousBoundary, FixedRowDropsTheConditionAndFixedEdgeNodeOnlyItsTerm) {
    // Node 0 x and node 2 x fixed: equations 0:0y 1:1x 2:1y 3:2y 4:3x 5:3y.
    CAnalysisData model = NumberedModel(4, {0, 4});
    const auto m = FromBoundaryLines(model,
                                     "$VISCO 100 0 0  1 0  1 1 1 1  0 1 3\n"
                                     "$VISCO 100 1 0  30 0  0 1 2 3  1 2 3\n",
                                     false);
    EXPECT_EQ(m.EntryCount(), 2u);
    EXPECT_EQ(m.rows[1].at(1), Complex(1.0, 0.0));
    EXPECT_EQ(m.rows[1].at(4), Complex(3.0, 0.0));
}

TEST(ViscousBoundary, GroupsSplitAtCode200AndOtherConditionsAddNothing) {
    CAnalysisData model = NumberedModel(3, {});
    const std::string lines =
        "0 3 0 0\n"
        "$VISCO 3 0 0  30 0  0 1 1 1  0 1 2\n"
        "0 150 0 0\n"  // a plain line with a viscous code carries no terms
        "$VISCO 199 0 0  30 0  0 1 0 0  0 1 -1\n"
        "$VISCO 200 1 0  30 0  0 2 0 0  1 2 -1\n"
        "$VISCO 202 2 1  30 0  0 4 0 0  2 1 -1\n";
    const SparseComplexMatrix base = FromBoundaryLines(model, lines, false);
    EXPECT_EQ(base.EntryCount(), 2u);
    EXPECT_EQ(base.rows[0].at(0), Complex(1.0, 0.0));
    const SparseComplexMatrix side = FromBoundaryLines(model, lines, true);
    EXPECT_EQ(side.EntryCount(), 4u);
    EXPECT_EQ(side.rows[2].at(2), Complex(2.0, 0.0));
    EXPECT_EQ(side.rows[5].at(5), Complex(4.0, 0.0));
}

// Two rows of the consistent dashpot matrix of a linear edge of length L, c L / 6 [2 1; 1 2]:
// the matrix is symmetric and its entries sum to c L, the whole edge's dashpot.
TEST(ViscousBoundary, LinearEdgeFactorsGiveTheConsistentEdgeDashpot) {
    const double cl = 2.4 * 1.5;
    CAnalysisData model = NumberedModel(2, {1, 3});  // x only
    const auto m = FromBoundaryLines(model,
                                     "$VISCO 100 0 0  3.6 0  0 10 5 0  0 1 -1\n"
                                     "$VISCO 100 1 0  3.6 0  0 10 5 0  1 0 -1\n",
                                     false);
    Complex total;
    for (const auto& row : m.rows)
        for (const auto& [j, v] : row) total += v;
    EXPECT_NEAR(total.real(), cl, 1e-12);
    EXPECT_DOUBLE_EQ(m.rows[0].at(1).real(), m.rows[1].at(0).real());
    EXPECT_NEAR(m.rows[0].at(0).real(), cl / 3.0, 1e-12);
}

TEST(ViscousBoundaryDeathTest, EdgeNodeOutsideTheNodeListStopsAsBadInput) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    CAnalysisData model = NumberedModel(3, {});
    auto row = boost::make_shared<CBCVisco>();
    row->typeCode = 100;
    row->edgeNode1 = 0;
    row->edgeNode2 = 3;
    model.boundaryConds.push_back(boost::make_shared<CBoundaryCond>(0, 0.0, 0.0, 3));
    model.boundaryConds.push_back(row);
    SparseComplexMatrix m;
    EXPECT_EXIT(AssembleViscousMatrix(m, model, false), testing::ExitedWithCode(2),
                "boundary conditions:2: .*node 3");
}
