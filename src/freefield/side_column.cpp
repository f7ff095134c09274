#include "freefield/side_column.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <sstream>

#include "base/run_stop.hpp"

namespace {

std::string Number(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

// The faults of an edge name the edge, its abscissa and what is wrong there.
[[noreturn]] void StopOnEdge(Edge edge, double x, const std::string& fault) {
    StopOnBadModel(std::string("the ") + EdgeName(edge) + " edge of the section (x = " + Number(x) +
                   "): " + fault);
}

}  // namespace

const char* EdgeName(Edge edge) {
    return edge == Edge::kLeft ? "left" : "right";
}

std::vector<std::vector<int>> ElementSides(const CElement& element) {
    switch (element.nodes.size()) {
        case 4:
            return {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
        case 8:
            return {{0, 1, 4}, {1, 2, 5}, {2, 3, 6}, {3, 0, 7}};
        case 6:
            // Corners 1, 2, 3, then the middles of the sides 2-3, 3-1 and 1-2.
            return {{0, 1, 5}, {1, 2, 3}, {2, 0, 4}};
        default:
            return {};
    }
}

SideColumn FindSideColumn(const CAnalysisData& analysis, Edge edge) {
    const std::vector<CNode>& nodes = analysis.nodes;
    std::vector<bool> used(nodes.size(), false);
    for (const CElement& element : analysis.elements)
        for (int n : element.nodes) used[static_cast<size_t>(n)] = true;

    double xMin = std::numeric_limits<double>::infinity(), xMax = -xMin;
    double yMin = xMin, yMax = -xMin;
    for (size_t n = 0; n < nodes.size(); ++n) {
        if (!used[n]) continue;
        xMin = std::min(xMin, nodes[n].x);
        xMax = std::max(xMax, nodes[n].x);
        yMin = std::min(yMin, nodes[n].y);
        yMax = std::max(yMax, nodes[n].y);
    }
    if (!(xMin <= xMax)) StopOnBadModel("the section has no element: it has no edges");

    SideColumn column;
    column.edge = edge;
    column.x = edge == Edge::kLeft ? xMin : xMax;
    const double tolerance = 1e-6 * std::max(xMax - xMin, yMax - yMin);
    std::vector<bool> onEdge(nodes.size(), false);
    for (size_t n = 0; n < nodes.size(); ++n)
        onEdge[n] = used[n] && std::fabs(nodes[n].x - column.x) <= tolerance;

    const auto higher = [&](int a, int b) { return nodes[a].y > nodes[b].y; };
    for (size_t e = 0; e < analysis.elements.size(); ++e) {
        const CElement& element = analysis.elements[e];
        for (const std::vector<int>& side : ElementSides(element)) {
            SideLayer layer;
            layer.element = static_cast<int>(e);
            for (int local : side) layer.nodes.push_back(element.nodes[static_cast<size_t>(local)]);
            if (!std::all_of(layer.nodes.begin(), layer.nodes.end(),
                             [&](int n) { return onEdge[static_cast<size_t>(n)]; }))
                continue;
            std::sort(layer.nodes.begin(), layer.nodes.end(), higher);
            layer.top = nodes[layer.nodes.front()].y;
            layer.bottom = nodes[layer.nodes.back()].y;
            if (!(layer.top > layer.bottom))
                StopOnEdge(edge, column.x,
                           "element " + std::to_string(e + 1) +
                               " has a side of no height on it (a doubled or flat element)");
            column.layers.push_back(std::move(layer));
        }
    }
    if (column.layers.empty())
        StopOnEdge(edge, column.x,
                   "no element side lies on it. The free-field column needs a vertical edge of "
                   "element sides; a slanting edge cannot carry one");
    std::sort(column.layers.begin(), column.layers.end(),
              [](const SideLayer& a, const SideLayer& b) { return a.top > b.top; });

    for (size_t k = 0; k < column.layers.size(); ++k) {
        const SideLayer& layer = column.layers[k];
        if (layer.nodes.size() != column.layers.front().nodes.size())
            StopOnEdge(edge, column.x,
                       "element " + std::to_string(column.layers.front().element + 1) +
                           " and element " + std::to_string(layer.element + 1) +
                           " put sides of different kinds (2 and 3 nodes) on it; the column must "
                           "be of one kind of element");
        if (k + 1 < column.layers.size()) {
            const SideLayer& below = column.layers[k + 1];
            if (layer.nodes.back() != below.nodes.front())
                StopOnEdge(edge, column.x,
                           "the sides of element " + std::to_string(layer.element + 1) +
                               " (down to y = " + Number(layer.bottom) + ") and element " +
                               std::to_string(below.element + 1) + " (from y = " +
                               Number(below.top) +
                               ") do not meet at one node: the element sides along it must form "
                               "one unbroken vertical line");
        }
        for (size_t i = 0; i + 1 < layer.nodes.size(); ++i) column.nodes.push_back(layer.nodes[i]);
    }
    column.nodes.push_back(column.layers.back().nodes.back());

    const std::set<int> inColumn(column.nodes.begin(), column.nodes.end());
    for (size_t n = 0; n < nodes.size(); ++n)
        if (onEdge[n] && inColumn.count(static_cast<int>(n)) == 0)
            StopOnEdge(edge, column.x,
                       "node " + std::to_string(n + 1) + " (y = " + Number(nodes[n].y) +
                           ") lies on it but on no element side along it");
    return column;
}
