#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "input/reader_test_support.hpp"
#include "support/project_fixture.hpp"

namespace {

// One elastic material and a mesh of twelve nodes.
class ElementReader : public testing::Test {
  protected:
    ElementReader() : analysis(AnalysisWithWave(4)) {
        project.Write("materials.dat", "1\n5\n1.8\n1.9\n0\n100\n0.3\n0.02\n");
        std::string nodes;
        for (int i = 0; i < 12; ++i) nodes += std::to_string(i) + " 0\n";
        project.Write("nodes.dat", nodes);
        analysis.ReadNodes(project.Path("nodes.dat"));
    }
    void Read(const std::string& elementText) {
        project.Write("elements.dat", elementText);
        analysis.ReadElements(project.Path("elements.dat"), project.Path("materials.dat"));
    }

    ProjectFolder project;
    CAnalysisData analysis;
};

TEST_F(ElementReader, EachKindGetsItsShapeFunctionRuleAndPoints) {
    Read(
        "0 4 1 0 1 2 3\n"
        "0 3 1 0 1 2\n"  // no three-node element: passed over
        "0 6 0 4 5 6 7 8 9\n"
        "0 8 2 0 1 2 3 4 5 6 7\n");
    ASSERT_EQ(analysis.elements.size(), 3u);
    const struct {
        int nodeCount;
        int points;
        bool firstDensity;
    } expected[] = {{4, 4, true}, {6, 7, false}, {8, 9, false}};
    for (size_t e = 0; e < 3; ++e) {
        const CElement& element = analysis.elements[e];
        SCOPED_TRACE(e);
        EXPECT_EQ(static_cast<int>(element.nodes.size()), expected[e].nodeCount);
        EXPECT_EQ(element.shapeFunction->nodeCount, expected[e].nodeCount);
        EXPECT_EQ(element.gaussCount, expected[e].points);
        EXPECT_EQ(element.ruleCount, expected[e].points);
        ASSERT_EQ(static_cast<int>(element.gaussPoints.size()), expected[e].points);
        EXPECT_DOUBLE_EQ(element.gaussPoints.back().weight,
                         element.gaussRule->points.back().weight);
        EXPECT_EQ(element.usesFirstDensity, expected[e].firstDensity);
        EXPECT_EQ(element.material.get(), analysis.materials[0].get());  // shared on reading
    }
    EXPECT_EQ(analysis.elements[1].nodes, (std::vector<int>{4, 5, 6, 7, 8, 9}));
    EXPECT_NE(analysis.elements[0].gaussRule.get(), analysis.elements[2].gaussRule.get());
    EXPECT_DOUBLE_EQ(analysis.elements[0].Density(), 1.8);
    EXPECT_DOUBLE_EQ(analysis.elements[1].Density(), 1.9);
}

TEST_F(ElementReader, ShortLineLeavesMissingNodesAtZero) {
    Read("0 4 2 5 6 7\n");
    ASSERT_EQ(analysis.elements.size(), 1u);
    EXPECT_EQ(analysis.elements[0].nodes, (std::vector<int>{5, 6, 7, 0}));
    EXPECT_FALSE(analysis.elements[0].usesFirstDensity);
}

TEST_F(ElementReader, MaterialsAreReadWithoutAnElementFile) {
    analysis.ReadElements("", project.Path("materials.dat"));
    EXPECT_EQ(analysis.materials.size(), 1u);
    EXPECT_TRUE(analysis.elements.empty());
}

using ElementReaderDeathTest = ElementReader;

TEST_F(ElementReaderDeathTest, MaterialIndexAboveTheCountEndsWithStatusZero) {
    EXPECT_EXIT(
        {
            StdoutToStderr();
            Read("0 4 1 0 1 2 3\n2 4 1 0 1 2 3\n");
        },
        testing::ExitedWithCode(0), "^ERROR:MaterialDat\n$");
}

TEST_F(ElementReaderDeathTest, BadLinesStopWithStatusTwo) {
    const struct {
        const char* text;
        const char* message;
    } cases[] = {
        {"0 4 1 0 1 2 3\n1 4 1 0 1 2 3\n", "elements.dat:2: material 1 is not in"},
        {"-1 8 1 0 1 2 3 4 5 6 7\n", "elements.dat:1: material -1 is not in"},
        {"0 4 1 0 1 2 12\n", "elements.dat:1: node 12 is not in the node list of 12"},
        {"0 6 1 0 1 -2 3 4 5\n", "elements.dat:1: node -2 is not in"},
        {"0 4 1 0 1 2 3\n\n", "elements.dat:2: .*material index"},
        {"0\n", "elements.dat:1: .*no node count"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EXIT(Read(c.text), testing::ExitedWithCode(2), c.message);
    }
}

}  // namespace
