// The side columns that the free-field analysis finds at the edges of a section.
#include <gtest/gtest.h>

#include "freefield/side_column.hpp"
#include "structured_mesh.hpp"

namespace {

SectionGrid Grid(int nodesPerElement) {
    return SectionGrid{nodesPerElement, 3, 4, 6.0, 8.0, false};
}

CAnalysisData Section(const SectionGrid& grid) {
    CAnalysisData analysis;
    BuildStructuredMesh(grid, ElasticMaterial(40.0, 0.05, 0.3, 1.8e-3), analysis);
    return analysis;
}

TEST(SideColumn, EdgesOfStructuredSectionsRunFromTheSurfaceDown) {
    struct Case {
        int nodesPerElement;
        int nodesPerLayer;
        int gridRows;  // node rows of the finer grid
    };
    for (const Case c : {Case{4, 2, 5}, Case{8, 3, 9}, Case{6, 3, 9}}) {
        SCOPED_TRACE(c.nodesPerElement);
        const SectionGrid grid = Grid(c.nodesPerElement);
        const CAnalysisData section = Section(grid);
        const int lastColumn = c.nodesPerElement == 4 ? grid.columns : 2 * grid.columns;
        for (const Edge edge : {Edge::kLeft, Edge::kRight}) {
            const SideColumn column = FindSideColumn(section, edge);
            const int i = edge == Edge::kLeft ? 0 : lastColumn;
            EXPECT_EQ(column.x, edge == Edge::kLeft ? 0.0 : 6.0);
            ASSERT_EQ(column.nodes.size(), static_cast<size_t>(c.gridRows));
            for (int k = 0; k < c.gridRows; ++k)
                EXPECT_EQ(column.nodes[k], StructuredNode(grid, i, c.gridRows - 1 - k)) << k;
            ASSERT_EQ(column.layers.size(), 4u);
            EXPECT_EQ(column.NodesPerLayer(), c.nodesPerLayer);
            for (const SideLayer& layer : column.layers) {
                EXPECT_DOUBLE_EQ(layer.Thickness(), 2.0);
                // The layer's element is the one at this edge in its row.
                const auto& nodes = section.elements[layer.element].nodes;
                for (int n : layer.nodes)
                    EXPECT_NE(std::find(nodes.begin(), nodes.end(), n), nodes.end());
            }
            EXPECT_EQ(column.layers.front().top, 8.0);
            EXPECT_EQ(column.layers.back().bottom, 0.0);
            EXPECT_EQ(column.NormalX(), edge == Edge::kLeft ? -1.0 : 1.0);
        }
    }
}

TEST(SideColumn, NodesWithinTheToleranceOfTheEdgeCountAsOnIt) {
    CAnalysisData section = Section(Grid(4));
    section.nodes[StructuredNode(Grid(4), 0, 2)].x = 3e-6;  // a millionth of 8 m is 8e-6
    EXPECT_EQ(FindSideColumn(section, Edge::kLeft).nodes.size(), 5u);
}

TEST(SideColumn, EdgesThatCannotCarryAColumnEndTheRun) {
    struct Case {
        const char* name;
        void (*change)(CAnalysisData&);
        const char* message;
    };
    const Case cases[] = {
        {"slanting edge",
         [](CAnalysisData& s) {
             for (CNode& node : s.nodes) node.x += 0.1 * node.y;
         },
         "left edge of the section \\(x = 0\\): no element side lies on it"},
        {"node bent off the edge",
         [](CAnalysisData& s) { s.nodes[StructuredNode(Grid(4), 0, 2)].x = 0.5; },
         "sides of element 10 \\(down to y = 6\\) and element 1 \\(from y = 2\\) do not meet"},
        {"node on the edge that no side holds",
         [](CAnalysisData& s) {
             s.nodes.emplace_back(0.0, 3.0, 0.0);
             s.elements.push_back(s.elements[1]);
             s.elements.back().nodes = {1, 2, 6, static_cast<int>(s.nodes.size() - 1)};
         },
         "node 21 \\(y = 3\\) lies on it but on no element side along it"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CAnalysisData section = Section(Grid(4));
        c.change(section);
        EXPECT_EXIT(FindSideColumn(section, Edge::kLeft), testing::ExitedWithCode(2), c.message);
    }
}

TEST(SideColumn, MixedElementKindsAlongAnEdgeEndTheRun) {
    // The top layer of 8-node elements over 4-node ones: rebuild the top-left element as an
    // 8-node one with middle nodes of its own.
    CAnalysisData section = Section(Grid(4));
    CElement& top = section.elements[9];  // left element of the top row
    const auto add = [&](double x, double y) {
        section.nodes.emplace_back(x, y, 0.0);
        return static_cast<int>(section.nodes.size() - 1);
    };
    const std::vector<int> c = top.nodes;
    top.nodes = {c[0], c[1], c[2], c[3], add(1, 6), add(2, 7), add(1, 8), add(0, 7)};
    EXPECT_EXIT(FindSideColumn(section, Edge::kLeft), testing::ExitedWithCode(2),
                "element 10 and element 7 put sides of different kinds");
}

}  // namespace
