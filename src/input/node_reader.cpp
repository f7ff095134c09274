// The node file: one node a line, "x y"; a node is known by its place among the accepted lines.
#include <cstdio>
#include <string>
#include <vector>

#include "base/platform.hpp"
#include "input/line_reader.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"
#include "model/run_memory.hpp"

void ReadNodes(CAnalysisData& analysis, const std::string& path) {
    if (path.empty()) return;
    // Each node carries its x and y response for the lines 0 .. P/2 of the padded wave.
    if (analysis.seismicWaves.empty())
        StopOnBadInput(path, 0, "the nodes are read before any wave");
    struct NodeLine {
        double x, y;
        int line;
    };
    std::vector<NodeLine> read;
    int lastLine = 0;
    ReadDataLines(path, "NodeData:Reading error", [&](const std::string& line, int number) {
        lastLine = number;
        double x = 0.0, y = 0.0;
        // A line that does not give both coordinates takes no node number.
        if (std::sscanf(line.c_str(), "%lf %lf", &x, &y) != 2) return;
        read.push_back({x, y, number});
    });

    // The spectra of all nodes must fit in memory with the wave before they are allocated.
    const int paddedLength = analysis.PaddedLength();
    const double nodeCount = static_cast<double>(analysis.nodes.size() + read.size());
    const std::string shortfall = MemoryShortfall(paddedLength, nodeCount, PhysicalMemory());
    if (!shortfall.empty()) {
        StopOnBadInput(path, lastLine,
                       std::to_string(static_cast<size_t>(nodeCount)) +
                           " nodes with a record padded to " + std::to_string(paddedLength) +
                           " samples " + shortfall);
    }

    const size_t spectrumLength = static_cast<size_t>(paddedLength / 2 + 1);
    analysis.sources.nodesPath = path;
    analysis.nodes.reserve(analysis.nodes.size() + read.size());
    for (const NodeLine& r : read) {
        CNode node(r.x, r.y, 0.0);
        node.dispX = ComplexVector(spectrumLength);
        node.dispY = ComplexVector(spectrumLength);
        analysis.nodes.push_back(std::move(node));
        analysis.sources.nodeLines.push_back(r.line);
    }
}
