#include <gtest/gtest.h>

#include "input/reader_test_support.hpp"
#include "support/project_fixture.hpp"

namespace {

TEST(NodeReader, OnlyLinesWithTwoValuesTakeANodeNumber) {
    ProjectFolder project;
    project.Write("nodes.dat", "// x y\n0 0\n1.5\nno node\n\n2.5 -3 labels follow\r\n");
    CAnalysisData analysis = AnalysisWithWave(8);
    analysis.ReadNodes(project.Path("nodes.dat"));
    ASSERT_EQ(analysis.nodes.size(), 2u);
    EXPECT_DOUBLE_EQ(analysis.nodes[1].x, 2.5);
    EXPECT_DOUBLE_EQ(analysis.nodes[1].y, -3.0);
    EXPECT_DOUBLE_EQ(analysis.nodes[1].z, 0.0);
}

TEST(NodeReader, SpectraCoverTheLinesUpToHalfThePaddedLength) {
    ProjectFolder project;
    project.Write("nodes.dat", "0 0\n");
    CAnalysisData analysis = AnalysisWithWave(8);
    analysis.ReadNodes(project.Path("nodes.dat"));
    ASSERT_EQ(analysis.nodes.size(), 1u);
    for (const ComplexVector* spectrum : {&analysis.nodes[0].dispX, &analysis.nodes[0].dispY}) {
        ASSERT_EQ(spectrum->size(), 5u);
        for (size_t i = 0; i < 5; ++i) EXPECT_EQ((*spectrum)[i], Complex(0.0, 0.0));
    }
}

TEST(NodeReaderDeathTest, MissingFileIsAReadingError) {
    CAnalysisData analysis = AnalysisWithWave(8);
    EXPECT_EXIT(
        {
            StdoutToStderr();
            analysis.ReadNodes("no/such/nodes.dat");
        },
        testing::ExitedWithCode(0), "^NodeData:Reading error\n$");
}

}  // namespace
