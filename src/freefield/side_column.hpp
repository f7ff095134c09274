// The soil columns at the left and right edges of the section: the nodes on each edge and the
// layers that the elements along it define, from the surface down to the base.
#pragma once

#include <string>
#include <vector>

#include "model/analysis_data.hpp"

enum class Edge { kLeft, kRight };

// "left" or "right".
const char* EdgeName(Edge edge);

// One layer of a column: the side of one element that lies on the edge.
struct SideLayer {
    int element = 0;         // index of the element in the mesh
    std::vector<int> nodes;  // the side's nodes from the top down: 2, or 3 with the middle one
    double top = 0.0;        // y of the top node, m
    double bottom = 0.0;     // y of the bottom node, m

    double Thickness() const { return top - bottom; }
};

struct SideColumn {
    Edge edge = Edge::kLeft;
    double x = 0.0;                  // abscissa of the edge, m
    std::vector<int> nodes;          // every node on the edge, from the top down
    std::vector<SideLayer> layers;  // from the top down; each layer's bottom node is the next
                                      // layer's top node

    // 2 for the sides of 4-node elements, 3 for those of 8-node and 6-node elements.
    int NodesPerLayer() const { return static_cast<int>(layers.front().nodes.size()); }
    // Outward normal of the section at this edge: -1 on the left, +1 on the right.
    double NormalX() const { return edge == Edge::kRight ? 1.0 : -1.0; }
    int BaseNode() const { return nodes.back(); }
};

// The nodes of an element that lie on each of its sides, by their place in the element: the
// two corners, then the middle node for 6- and 8-node elements.
std::vector<std::vector<int>> ElementSides(const CElement& element);

// The column at one edge. The edge is the least (left) or greatest (right) x of the nodes that
// elements use; a node lies on it when its x is within a millionth of the section's size of that
// abscissa. The element sides whose nodes all lie on the edge must form one unbroken line from
// the top node down to the bottom node, of one kind (2 or 3 nodes), and hold every node on the
// edge: a slanting or stepped edge ends the run as a model that cannot be analysed.
SideColumn FindSideColumn(const CAnalysisData& analysis, Edge edge);
