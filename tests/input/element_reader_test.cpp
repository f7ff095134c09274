#include "support/reader_test_support.hpp"

namespace {

// One elastic material and a mesh of twelve nodes; only node lines of two values take a number.
class ElementReader : public ReaderTest {
  protected:
    ElementReader() {
        std::string nodes = "// x y\n1.5\nno node\n\n";
        for (int i = 0; i < 12; ++i) nodes += std::to_string(i) + " -3 labels follow\r\n";
        ReadNodes(analysis, File("nodes.dat", nodes));
    }
    void Read(const std::string& text) {
        ReadElements(analysis, File("elements.dat", text),
                     File("materials.dat", "1\n5\n1.8\n1.9\n0\n100\n0.3\n0.02\n"));
    }
};

// With a wave of 8 samples each node carries spectra of lines 0 to 4.
TEST_F(ElementReader, NodesTakeTheLinesOfTwoValuesWithSpectraOfHalfThePaddedLength) {
    ASSERT_EQ(analysis.nodes.size(), 12u);
    EXPECT_EQ(std::make_tuple(analysis.nodes[11].x, analysis.nodes[11].y, analysis.nodes[11].z),
              std::make_tuple(11.0, -3.0, 0.0));
    EXPECT_EQ(analysis.nodes[0].dispX.data, std::vector<Complex>(5));
    EXPECT_EQ(analysis.nodes[0].dispY.data, std::vector<Complex>(5));
}

TEST_F(ElementReader, EachKindGetsItsShapeFunctionRuleAndPoints) {
    Read(
        "0 4 1 0 1 2 3\n"
        "0 3 1 0 1 2\n"  // no three-node element: passed over
        "0 6 0 4 5 6 7 8 9\n"
        "0 8 2 0 1 2 3 4 5 6 7\n"
        "0 4 2 5 6 7\n");  // a short line leaves the missing nodes at 0
    ASSERT_EQ(analysis.elements.size(), 4u);
    // Node count, that of the shape function, points, rule points, first density.
    const std::tuple<size_t, int, int, int, bool> expected[] = {
        {4, 4, 4, 4, true}, {6, 6, 7, 7, false}, {8, 8, 9, 9, false}, {4, 4, 4, 4, false}};
    for (size_t i = 0; i < 4; ++i) {
        const CElement& e = analysis.elements[i];
        EXPECT_EQ(std::make_tuple(e.nodes.size(), e.shapeFunction->nodeCount, e.gaussCount,
                                  e.ruleCount, e.usesFirstDensity),
                  expected[i]);
        ASSERT_EQ(static_cast<int>(e.gaussPoints.size()), e.gaussCount);
        EXPECT_DOUBLE_EQ(e.gaussPoints.back().weight, e.gaussRule->points.back().weight);
        EXPECT_EQ(e.material.get(), analysis.materials[0].get());  // shared on reading
    }
    EXPECT_EQ(analysis.elements[1].nodes, (std::vector<int>{4, 5, 6, 7, 8, 9}));
    EXPECT_EQ(analysis.elements[3].nodes, (std::vector<int>{5, 6, 7, 0}));
    EXPECT_NE(analysis.elements[0].gaussRule.get(), analysis.elements[2].gaussRule.get());
    EXPECT_DOUBLE_EQ(analysis.elements[0].Density(), 1.8);
    EXPECT_DOUBLE_EQ(analysis.elements[1].Density(), 1.9);
}

using ElementReaderDeathTest = ElementReader;

TEST_F(ElementReaderDeathTest, BadLinesStop) {
    const std::tuple<const char*, int, const char*> cases[] = {
        {"0 4 1 0 1 2 3\n2 4 1 0 1 2 3\n", 0, "^ERROR:MaterialDat\n$"},  // above the count
        {"0 4 1 0 1 2 3\n1 4 1 0 1 2 3\n", 2, "elements.dat:2: material 1 is not in"},
        {"-1 8 1 0 1 2 3 4 5 6 7\n", 2, "elements.dat:1: material -1 is not in"},
        {"0 4 1 0 1 2 12\n", 2, "elements.dat:1: node 12 is not in the node list of 12"},
        {"0 6 1 0 1 -2 3 4 5\n", 2, "elements.dat:1: node -2 is not in"},
        {"0 4 1 0 1 2 3\n\n", 2, "elements.dat:2: .*material index"},
        {"0\n", 2, "elements.dat:1: .*no node count"},
    };
    for (const auto& [text, status, message] : cases)
        ExpectStop([&] { Read(text); }, status, message);
}

}  // namespace
