// The node file: one node a line, "x y"; a node is known by its place among the accepted lines.
#include <cstdio>
#include <string>

#include "input/line_reader.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"

void ReadNodes(CAnalysisData& analysis, const std::string& path) {
    if (path.empty()) return;
    // Each node carries its x and y response for the lines 0 .. P/2 of the padded wave.
    if (analysis.seismicWaves.empty())
        StopOnBadInput(path, 0, "the nodes are read before any wave");
    const size_t spectrumLength = static_cast<size_t>(analysis.PaddedLength() / 2 + 1);
    ReadDataLines(path, "NodeData:Reading error", [&](const std::string& line, int) {
        double x = 0.0, y = 0.0;
        // A line that does not give both coordinates takes no node number.
        if (std::sscanf(line.c_str(), "%lf %lf", &x, &y) != 2) return;
        CNode node(x, y, 0.0);
        node.dispX = ComplexVector(spectrumLength);
        node.dispY = ComplexVector(spectrumLength);
        analysis.nodes.push_back(std::move(node));
    });
}
