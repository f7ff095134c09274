#include "input/free_field.hpp"

#include <gtest/gtest.h>

#include "support/boundary_test_model.hpp"
#include "support/project_fixture.hpp"

namespace {
std::vector<ComplexVector> ReadFolder(const ProjectFolder& folder, const CAnalysisData& analysis) {
    std::vector<ComplexVector> motion;
    ReadFreeFieldFiles(motion, folder.Path("output_ff/"), analysis);
    return motion;
}
}  // namespace

TEST(FreeField, LeftFileOverridesRightWhereItHasLinesAndAFixedXNodeTakesNothing) {
    // 13 nodes, node 1 x fixed: node 12 x is equation 23.
    const CAnalysisData model = NumberedModel(13, {2}, 5);
    ProjectFolder folder;
    folder.Write("output_ff/RFF_3.dat", "12\n1 10\n2\n\n4 40\n5 50\n6 60\n");
    folder.Write("output_ff/LFF_8.dat", "12\r\n-1 -10\r\n");
    folder.Write("output_ff/RFF_0.dat", "1\n5 5\n6 6\n");
    folder.Write("output_ff/LFF_13.dat", "0\n9 9\n");    // beyond the node count: never looked for
    folder.Write("output_ff/RFF_5.dat", "node\n7 7\n");  // no number: node 0, quietly
    const auto motion = ReadFolder(folder, model);
    ASSERT_EQ(motion.size(), 5u);
    const Complex expected[] = {{-1, -10}, {2, 0}, {0, 0}, {4, 40}, {5, 50}};
    for (size_t k = 0; k < 5; ++k) {
        ASSERT_EQ(motion[k].size(), 25u);
        for (size_t e = 0; e < 25; ++e)
            EXPECT_EQ(motion[k][e], e == 23            ? expected[k]
                                    : e == 0 && k == 0 ? Complex(7, 7)
                                                       : Complex())
                << k << ", " << e;
    }
}
