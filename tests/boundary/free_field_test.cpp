#include "boundary/free_field.hpp"

#include <gtest/gtest.h>

#include "boundary_test_model.hpp"
#include "support/project_fixture.hpp"

namespace {
std::vector<ComplexVector> ReadFolder(const ProjectFolder& folder, const CAnalysisData& analysis) {
    std::vector<ComplexVector> motion;
    ReadFreeFieldFiles(motion, folder.Path("output_ff/"), analysis);
    return motion;
}
}  // namespace

TEST(FreeField, LeftFileOverridesRightOneWhereItHasLines) {
    // 13 nodes, none fixed: node 12 x is equation 24.
    const CAnalysisData model = NumberedModel(13, {}, 5);
    ProjectFolder folder;
    folder.Write("output_ff/RFF_3.dat", "12\n1 10\n2 20\n3 30\n4 40\n5 50\n");
    folder.Write("output_ff/LFF_8.dat", "12\r\n-1 -10\r\n-2 -20\r\n");
    const auto motion = ReadFolder(folder, model);
    ASSERT_EQ(motion.size(), 5u);
    const Complex expected[] = {{-1, -10}, {-2, -20}, {3, 30}, {4, 40}, {5, 50}};
    for (size_t k = 0; k < 5; ++k) {
        ASSERT_EQ(motion[k].size(), 26u);
        EXPECT_EQ(motion[k][24], expected[k]) << "line " << k;
        EXPECT_EQ(motion[k][25], Complex()) << "y is never set";
    }
}

TEST(FreeField, ShortOrLongFilesAndMissingFieldsGiveZeros) {
    const CAnalysisData model = NumberedModel(3, {}, 4);
    ProjectFolder folder;
    // Too many lines: the fifth value line would be line 4, beyond the count.
    folder.Write("output_ff/RFF_0.dat", "0\n1 1\n2\n\n4 4\n5 5");
    folder.Write("output_ff/RFF_1.dat", "2\n7 7\n");
    // Numbered beyond the node count: never looked for.
    folder.Write("output_ff/LFF_3.dat", "1\n9 9\n");
    const auto motion = ReadFolder(folder, model);
    const Complex node0[] = {{1, 1}, {2, 0}, {0, 0}, {4, 4}};
    const Complex node2[] = {{7, 7}, {0, 0}, {0, 0}, {0, 0}};
    for (size_t k = 0; k < 4; ++k) {
        EXPECT_EQ(motion[k][0], node0[k]) << "line " << k;
        EXPECT_EQ(motion[k][2], Complex()) << "line " << k;
        EXPECT_EQ(motion[k][4], node2[k]) << "line " << k;
    }
}

TEST(FreeField, NodeWithFixedXUsesNothingOfItsFile) {
    // Node 1 x fixed: equations 0:0x 1:0y 2:1y 3:2x 4:2y.
    const CAnalysisData model = NumberedModel(3, {2}, 3);
    ProjectFolder folder;
    folder.Write("output_ff/RFF_0.dat", "1\n5 5\n6 6\n7 7\n");
    const auto motion = ReadFolder(folder, model);
    ASSERT_EQ(motion.size(), 3u);
    for (const ComplexVector& line : motion) {
        ASSERT_EQ(line.size(), 5u);
        for (size_t e = 0; e < line.size(); ++e) EXPECT_EQ(line[e], Complex());
    }
}

TEST(FreeFieldDeathTest, NodeOutsideTheListStopsAsBadInput) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const CAnalysisData model = NumberedModel(3, {}, 3);
    ProjectFolder folder;
    folder.Write("output_ff/LFF_2.dat", "3\n1 1\n");
    EXPECT_EXIT(ReadFolder(folder, model), testing::ExitedWithCode(2),
                InAnyScratchFolder("output_ff/LFF_2.dat") + ":1: node 3 ");
    folder.Write("output_ff/LFF_2.dat", "x\n1 1\n");
    EXPECT_EXIT(ReadFolder(folder, model), testing::ExitedWithCode(2),
                "LFF_2\\.dat:1: no node index");
}
