#include "fem/viscous_boundary.hpp"

#include <gtest/gtest.h>

#include "input/model_readers.hpp"
#include "support/boundary_test_model.hpp"
#include "support/project_fixture.hpp"

namespace {
// The viscous matrix of a group, from boundary lines as the boundary file gives them.
Entries FromBoundaryLines(CAnalysisData& model, const std::string& lines, bool sideGroup) {
    ProjectFolder folder;
    folder.Write("boundary.dat", lines);
    model.boundaryConds.clear();
    ReadBoundary(model, model.boundaryConds, folder.Path("boundary.dat"));
    SparseComplexMatrix m(3);
    m.add(0, 0, Complex(7.0, 7.0));  // left over from before: must go
    AssembleViscousMatrix(m, model, sideGroup);
    return EntriesOf(m);
}
}  // namespace

// Without a third edge node a row takes two terms; a direction other than 0 means y; terms on
// one place add up; a fixed row drops its condition, a fixed edge node only its own term; codes
// from 200 form the side group.
TEST(ViscousBoundary, RowsTakeTheirTermsInTheirDirectionWithinTheirGroup) {
    // Node 0 x and node 2 x fixed: equations 0:0y 1:1x 2:1y 3:2y 4:3x 5:3y.
    CAnalysisData model = NumberedModel(4, {0, 4});
    const std::string lines =
        // code node dir  re im  f1 f2 f3 f4  edges
        "$VISCO 100 1 0  3 0  8 10 5 20  1 3 -1\n"
        "$VISCO 101 1 2  0 3  0 2.5 5 20  0 1 3\n"
        "$VISCO 102 1 0  30 0  0 1 2 0  1 0 -1\n"
        "$VISCO 100 0 0  3 0  0 10 10 10  0 1 3\n"
        "0 150 0 0\n"
        "$VISCO 3 1 0  3 0  0 10 10 10  1 1 1\n"
        "$VISCO 199 3 0  3 0  0 10 5 0  3 1 -1\n"
        "$VISCO 200 3 0  3 0  0 20 10 0  3 1 -1\n"
        "$VISCO 202 3 1  0 3  0 5 20 0  3 2 -1\n";
    const Complex i(0.0, 1.0);
    EXPECT_EQ(FromBoundaryLines(model, lines, false), (Entries{{{1, 1}, 2.0},
                                                               {{1, 4}, 0.5},
                                                               {{2, 0}, 0.25 * i},
                                                               {{2, 2}, 0.5 * i},
                                                               {{2, 5}, 2.0 * i},
                                                               {{4, 4}, 1.0},
                                                               {{4, 1}, 0.5}}));
    EXPECT_EQ(FromBoundaryLines(model, lines, true),
              (Entries{{{4, 4}, 2.0}, {{4, 1}, 1.0}, {{5, 5}, 0.5 * i}, {{5, 3}, 2.0 * i}}));
}
