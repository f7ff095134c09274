#include "support/reader_test_support.hpp"

namespace {

// A mesh of 13 nodes.
class BoundaryReader : public ReaderTest {
  protected:
    BoundaryReader() {
        for (int i = 0; i < 13; ++i) analysis.nodes.emplace_back(i, 0.0, 0.0);
    }
    void Read(const std::string& text) {
        ReadBoundary(analysis, analysis.boundaryConds, File("bc.dat", text));
    }
};

std::vector<int> Integers(const CBCVisco& v) {
    return {v.typeCode,  v.node,      v.rowNode,   v.direction,
            v.edgeNode1, v.edgeNode2, v.edgeNode3, v.edgeNodeCount};
}

TEST_F(BoundaryReader, PlainLinesGiveNodeThenCodeViscousLinesCodeThenNode) {
    Read(
        "12 2 0.5 0.25\n"
        "$VISCO 2 12 1 3 1.5 0 10 20 30 4 5 -1\r\n"
        "$V    100 7 0 3 0 6 0 0 0 1 2 5\n"
        "$X 5 1\n\nfree text\n");
    ASSERT_EQ(analysis.boundaryConds.size(), 6u);
    const CBoundaryCond& plain = *analysis.boundaryConds[0];
    EXPECT_EQ(dynamic_cast<const CBCVisco*>(&plain), nullptr);
    EXPECT_EQ(std::tie(plain.node, plain.typeCode, plain.value.x, plain.value.y),
              std::make_tuple(12, 2, 0.5, 0.25));
    const auto& first = dynamic_cast<const CBCVisco&>(*analysis.boundaryConds[1]);
    EXPECT_EQ(Integers(first), (std::vector<int>{2, 12, 12, 1, 4, 5, -1, 2}));
    EXPECT_EQ((std::vector<Complex>{first.coefficient, first.term1, first.term2, first.term3,
                                    first.term4}),
              (std::vector<Complex>{{3.0, 1.5}, {0.0, 0.0}, {1.0, 0.5}, {2.0, 1.0}, {3.0, 1.5}}));
    const auto& second = dynamic_cast<const CBCVisco&>(*analysis.boundaryConds[2]);
    EXPECT_EQ(Integers(second), (std::vector<int>{100, 7, 7, 0, 1, 2, 5, 3}));
    EXPECT_EQ(second.term1, Complex(0.6, 0.0));
    // Other "$" lines, empty lines and text fix x of node 0.
    for (size_t i = 3; i < 6; ++i)
        EXPECT_EQ(std::tie(analysis.boundaryConds[i]->node, analysis.boundaryConds[i]->typeCode),
                  std::make_tuple(0, 0));
}

TEST_F(BoundaryReader, IdleNodesAreFixedInBothDirections) {
    CElement element;
    element.nodes = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11};
    analysis.elements.push_back(element);
    Read("10 0 0 0\n");
    AddIdleNodeBoundaries(analysis, analysis.boundaryConds);
    // Nodes 10 and 12 are in no element; 10 is fixed again although the file names it.
    ASSERT_EQ(analysis.boundaryConds.size(), 3u);
    EXPECT_EQ(analysis.boundaryConds[1]->node, 10);
    EXPECT_EQ(std::tie(analysis.boundaryConds[2]->node, analysis.boundaryConds[2]->typeCode),
              std::make_tuple(12, 2));
    analysis.elements.clear();  // without elements every node is idle
    AddIdleNodeBoundaries(analysis, analysis.boundaryConds);
    EXPECT_EQ(analysis.boundaryConds.size(), 16u);
}

using BoundaryReaderDeathTest = BoundaryReader;

TEST_F(BoundaryReaderDeathTest, BadLinesStopWithStatusTwo) {
    const char* cases[][2] = {
        {"0 2\n$V\n", "bc.dat:2: a viscous line needs 12 fields after its keyword, it gives 0"},
        {"$VIS\n", "bc.dat:1: a viscous line needs 12"},
        {"$VISCO 100 3 0 1 0 0 1 1 0 4\n", "bc.dat:1: .*it gives 10"},
        {"$VISCO 100 13 0 1 0 0 1 1 0 4 5 -1\n", "bc.dat:1: node 13 is not in the node list of 13"},
        {"$VISCO 100 3 0 1 0 0 1 1 0 4 5 -2\n", "bc.dat:1: edge node -2 is not in"},
        {"13 2 0 0\n", "bc.dat:1: node 13 is not in"},
    };
    for (const auto& [text, message] : cases) ExpectStop([&] { Read(text); }, 2, message);
}

}  // namespace
