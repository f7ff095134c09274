// The node file: one node a line, "x y"; a node is known by its place among the accepted lines.
#include <cstdio>
#include <string>
#include <vector>

#include "base/platform.hpp"
#include "input/line_reader.hpp"
#include "input/model_memory.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"

void ReadNodes(CAnalysisData& analysis, const std::string& path) {
    if (path.empty()) return;
    // Each node carries its x and y response for the lines 0 .. P/2 of the padded wave.
    if (analysis.seismicWaves.empty())
        StopOnBadInput(path, 0, "the nodes are read before any wave");
    const size_t spectrumLength = static_cast<size_t>(analysis.PaddedLength() / 2 + 1);
    // The nodes may hold what the machine has beside the wave.
    const uint64_t padded = static_cast<uint64_t>(analysis.PaddedLength());
    const uint64_t budget = MemoryBudgetBytes();
    const uint64_t room = budget > WaveBytes(padded) ? budget - WaveBytes(padded) : 0;
    const uint64_t mostNodes = room / NodeSpectraBytes(padded);
    analysis.sources.nodesPath = path;
    // The lines are taken first and the spectra allocated after: a mesh whose spectra the machine
    // cannot hold stops before any of them is allocated.
    struct NodeLine {
        double x, y;
        int line;
    };
    std::vector<NodeLine> read;
    ReadDataLines(path, "NodeData:Reading error", [&](const std::string& line, int number) {
        double x = 0.0, y = 0.0;
        // A line that does not give both coordinates takes no node number.
        if (std::sscanf(line.c_str(), "%lf %lf", &x, &y) != 2) return;
        if (analysis.nodes.size() + read.size() >= mostNodes) {
            StopOnBadInput(path, number,
                           "node " + std::to_string(analysis.nodes.size() + read.size() + 1) +
                               ": the response spectra of more than " + std::to_string(mostNodes) +
                               " nodes on a wave of " + std::to_string(padded) +
                               " samples need more than the " + MegabytesText(budget) +
                               " of memory of this machine");
        }
        read.push_back({x, y, number});
    });
    analysis.nodes.reserve(analysis.nodes.size() + read.size());
    for (const NodeLine& r : read) {
        CNode node(r.x, r.y, 0.0);
        node.dispX = ComplexVector(spectrumLength);
        node.dispY = ComplexVector(spectrumLength);
        analysis.nodes.push_back(std::move(node));
        analysis.sources.nodeLines.push_back(r.line);
    }
}
