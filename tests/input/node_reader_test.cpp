#include <vector>

#include "input/reader_test_support.hpp"

namespace {

using NodeReader = ReaderTest;

// With a wave of 8 samples each node carries spectra of lines 0 to 4.
TEST_F(NodeReader, OnlyLinesWithTwoValuesTakeANodeNumberAndSpectraCoverHalfThePaddedLength) {
    analysis.ReadNodes(File("nodes.dat", "// x y\n0 0\n1.5\nno node\n\n2.5 -3 labels follow\r\n"));
    ASSERT_EQ(analysis.nodes.size(), 2u);
    EXPECT_EQ(analysis.nodes[1].x, 2.5);
    EXPECT_EQ(analysis.nodes[1].y, -3.0);
    EXPECT_EQ(analysis.nodes[1].z, 0.0);
    EXPECT_EQ(analysis.nodes[0].dispX.data, std::vector<Complex>(5));
    EXPECT_EQ(analysis.nodes[0].dispY.data, std::vector<Complex>(5));
}

}  // namespace
