// The boundary file: node constraints ("node code vx vy") and viscous dashpot rows of boundary
// edges ("$V...." keyword, then code, node, direction, coefficient, four factors and three edge
// nodes). Nodes that no element uses are fixed afterwards.
#include <boost/make_shared.hpp>
#include <cstdio>
#include <string>
#include <vector>

#include "input/line_reader.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"

namespace {

// The keyword of a viscous line takes six characters; its fields start at the seventh.
constexpr size_t kKeywordLength = 6;
constexpr int kViscousFieldCount = 12;

bool IsViscousLine(const std::string& line) {
    return line.size() >= 2 && line[0] == '$' && line[1] == 'V';
}

// coefficient times factor, over 30, the real and imaginary parts taken apart.
Complex ScaledTerm(double real, double imag, double factor) {
    return Complex((real * factor) / 30.0, (imag * factor) / 30.0);
}

}  // namespace

void ReadBoundary(CAnalysisData& analysis, ConditionList& conditions, const std::string& path) {
    const int nodeCount = static_cast<int>(analysis.nodes.size());
    analysis.sources.boundaryPath = path;
    ReadDataLines(path, "BCDispData:Reading error", [&](const std::string& line, int number) {
        auto requireNode = [&](int node, const char* what) {
            if (node >= 0 && node < nodeCount) return;
            StopOnBadInput(path, number,
                           std::string(what) + " " + std::to_string(node) +
                               " is not in the node list of " + std::to_string(nodeCount));
        };
        if (!IsViscousLine(line)) {
            // Unscanned fields stay 0: a line of text fixes x of node 0.
            int node = 0, code = 0;
            double vx = 0.0, vy = 0.0;
            std::sscanf(line.c_str(), "%d %d %lf %lf", &node, &code, &vx, &vy);
            requireNode(node, "node");
            conditions.push_back(boost::make_shared<CBoundaryCond>(node, vx, vy, code));
            analysis.sources.boundaryLines.push_back(number);
            return;
        }

        const std::string fields = line.size() > kKeywordLength ? line.substr(kKeywordLength) : "";
        int code = 0, node = 0, direction = 0, edge1 = 0, edge2 = 0, edge3 = 0;
        double re = 0.0, im = 0.0, f1 = 0.0, f2 = 0.0, f3 = 0.0, f4 = 0.0;
        const int scanned =
            std::sscanf(fields.c_str(), "%d %d %d %lf %lf %lf %lf %lf %lf %d %d %d", &code, &node,
                        &direction, &re, &im, &f1, &f2, &f3, &f4, &edge1, &edge2, &edge3);
        if (scanned != kViscousFieldCount) {
            StopOnBadInput(path, number,
                           "a viscous line needs 12 fields after its keyword, it gives " +
                               std::to_string(scanned < 0 ? 0 : scanned));
        }
        requireNode(node, "node");
        requireNode(edge1, "edge node");
        requireNode(edge2, "edge node");
        if (edge3 != -1) requireNode(edge3, "edge node");

        auto visco = boost::make_shared<CBCVisco>();
        visco->typeCode = code;
        visco->node = node;
        visco->rowNode = node;
        visco->direction = direction;
        visco->coefficient = Complex(re, im);
        visco->term1 = ScaledTerm(re, im, f1);
        visco->term2 = ScaledTerm(re, im, f2);
        visco->term3 = ScaledTerm(re, im, f3);
        visco->term4 = ScaledTerm(re, im, f4);
        visco->edgeNode1 = edge1;
        visco->edgeNode2 = edge2;
        visco->edgeNode3 = edge3;
        visco->edgeNodeCount = edge3 != -1 ? 3 : 2;
        conditions.push_back(visco);
        analysis.sources.boundaryLines.push_back(number);
    });
}

void AddIdleNodeBoundaries(CAnalysisData& analysis, ConditionList& conditions) {
    // A node in no element has no stiffness: both of its directions are fixed.
    std::vector<bool> used(analysis.nodes.size(), false);
    for (const CElement& element : analysis.elements)
        for (int node : element.nodes)
            if (node >= 0 && static_cast<size_t>(node) < used.size()) used[node] = true;
    for (size_t node = 0; node < used.size(); ++node) {
        if (!used[node])
            conditions.push_back(
                boost::make_shared<CBoundaryCond>(static_cast<int>(node), 0.0, 0.0, 2));
    }
}
