#include <gtest/gtest.h>

#include <string>

#include "input/reader_test_support.hpp"
#include "support/project_fixture.hpp"

namespace {

// A mesh of 13 nodes.
class BoundaryReader : public testing::Test {
  protected:
    BoundaryReader() : analysis(AnalysisWithWave(4)) {
        for (int i = 0; i < 13; ++i) analysis.nodes.emplace_back(i, 0.0, 0.0);
    }
    void Read(const std::string& text) {
        project.Write("bc.dat", text);
        analysis.ReadBoundary(analysis.boundaryConds, project.Path("bc.dat"));
    }
    const CBCVisco& Visco(size_t i) const {
        return dynamic_cast<const CBCVisco&>(*analysis.boundaryConds.at(i));
    }

    ProjectFolder project;
    CAnalysisData analysis;
};

TEST_F(BoundaryReader, PlainAndViscousLinesNameNodeAndCodeTheOtherWayRound) {
    Read(
        "12 2 0.5 0.25\n"
        "$VISCO 2 12 1 3 1.5 0 10 20 30 4 5 -1\r\n"
        "$V    100 7 0 3 0 6 0 0 0 1 2 5\n");
    ASSERT_EQ(analysis.boundaryConds.size(), 3u);
    const CBoundaryCond& plain = *analysis.boundaryConds[0];
    EXPECT_EQ(dynamic_cast<const CBCVisco*>(&plain), nullptr);
    EXPECT_EQ(plain.node, 12);
    EXPECT_EQ(plain.typeCode, 2);
    EXPECT_DOUBLE_EQ(plain.value.x, 0.5);
    EXPECT_DOUBLE_EQ(plain.value.y, 0.25);

    const CBCVisco& first = Visco(1);
    EXPECT_EQ(first.typeCode, 2);
    EXPECT_EQ(first.node, 12);
    EXPECT_EQ(first.rowNode, 12);
    EXPECT_EQ(first.direction, 1);
    EXPECT_EQ(first.coefficient, Complex(3.0, 1.5));
    EXPECT_EQ(first.term1, Complex(0.0, 0.0));
    EXPECT_EQ(first.term2, Complex(1.0, 0.5));
    EXPECT_EQ(first.term3, Complex(2.0, 1.0));
    EXPECT_EQ(first.term4, Complex(3.0, 1.5));
    EXPECT_EQ(first.edgeNode1, 4);
    EXPECT_EQ(first.edgeNode2, 5);
    EXPECT_EQ(first.edgeNode3, -1);
    EXPECT_EQ(first.edgeNodeCount, 2);

    const CBCVisco& second = Visco(2);
    EXPECT_EQ(second.typeCode, 100);
    EXPECT_EQ(second.direction, 0);
    EXPECT_EQ(second.term1, Complex(0.6, 0.0));
    EXPECT_EQ(second.edgeNode3, 5);
    EXPECT_EQ(second.edgeNodeCount, 3);
}

TEST_F(BoundaryReader, OtherDollarLinesAndTextFixXOfNodeZero) {
    Read("$X 5 1\n\nfree text\n");
    ASSERT_EQ(analysis.boundaryConds.size(), 3u);
    for (const auto& condition : analysis.boundaryConds) {
        EXPECT_EQ(condition->node, 0);
        EXPECT_EQ(condition->typeCode, 0);
    }
}

TEST_F(BoundaryReader, IdleNodesAreFixedInBothDirections) {
    CElement element;
    element.nodes = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11};
    analysis.elements.push_back(element);
    Read("10 0 0 0\n");
    analysis.AddIdleNodeBoundaries(analysis.boundaryConds);
    // Nodes 10 and 12 are in no element; 10 is fixed again although the file names it.
    ASSERT_EQ(analysis.boundaryConds.size(), 3u);
    EXPECT_EQ(analysis.boundaryConds[1]->node, 10);
    EXPECT_EQ(analysis.boundaryConds[2]->node, 12);
    EXPECT_EQ(analysis.boundaryConds[2]->typeCode, 2);
}

TEST_F(BoundaryReader, WithoutElementsEveryNodeIsIdle) {
    analysis.ReadBoundary(analysis.boundaryConds, "");  // no boundary file
    analysis.AddIdleNodeBoundaries(analysis.boundaryConds);
    EXPECT_EQ(analysis.boundaryConds.size(), 13u);
}

using BoundaryReaderDeathTest = BoundaryReader;

TEST_F(BoundaryReaderDeathTest, BadLinesStopWithStatusTwo) {
    const struct {
        const char* text;
        const char* message;
    } cases[] = {
        {"0 2\n$V\n", "bc.dat:2: a viscous line needs 12 fields after its keyword, it gives 0"},
        {"$VIS\n", "bc.dat:1: a viscous line needs 12"},
        {"$VISCO 100 3 0 1 0 0 1 1 0 4\n", "bc.dat:1: .*it gives 10"},
        {"$VISCO 100 13 0 1 0 0 1 1 0 4 5 -1\n", "bc.dat:1: node 13 is not in the node list of 13"},
        {"$VISCO 100 3 0 1 0 0 1 1 0 4 5 -2\n", "bc.dat:1: edge node -2 is not in"},
        {"13 2 0 0\n", "bc.dat:1: node 13 is not in"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EXIT(Read(c.text), testing::ExitedWithCode(2), c.message);
    }
}

TEST_F(BoundaryReaderDeathTest, MissingFileIsAReadingError) {
    EXPECT_EXIT(
        {
            StdoutToStderr();
            analysis.ReadBoundary(analysis.boundaryConds, "no/such/bc.dat");
        },
        testing::ExitedWithCode(0), "^BCDispData:Reading error\n$");
}

}  // namespace
