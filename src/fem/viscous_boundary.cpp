#include "fem/viscous_boundary.hpp"

#include <algorithm>
#include <array>
#include <string>

#include "input/line_reader.hpp"

namespace {
// Equation of a node's x (d 0) or y (d 1) degree of freedom; a node outside the list ends the
// run, naming the condition by its place in the list.
int32_t EquationOf(const CAnalysisData& analysis, int node, int d, size_t conditionIndex) {
    const int64_t nodeCount = static_cast<int64_t>(analysis.nodes.size());
    if (node < 0 || node >= nodeCount)
        StopOnBadInput("boundary conditions", static_cast<int>(conditionIndex + 1),
                       "viscous condition on node " + std::to_string(node) + ", outside 0.." +
                           std::to_string(nodeCount - 1) + " of the node list");
    return analysis.equationMap[2 * static_cast<size_t>(node) + static_cast<size_t>(d)];
}
}  // namespace

void AssembleViscousMatrix(SparseComplexMatrix& matrix, const CAnalysisData& analysis,
                           bool sideGroup) {
    matrix = SparseComplexMatrix(static_cast<size_t>(std::max(analysis.freeDofCount, 0)));
    const ConditionList& conditions = analysis.boundaryConds;
    for (size_t k = 0; k < conditions.size(); ++k) {
        const int code = conditions[k]->typeCode;
        if (code < 100 || sideGroup != (code >= 200)) continue;
        // Only "$V" lines carry dashpot terms; any other condition has none to add.
        const auto* visco = dynamic_cast<const CBCVisco*>(conditions[k].get());
        if (visco == nullptr) continue;
        const int d = visco->direction == 0 ? 0 : 1;
        const int32_t row = EquationOf(analysis, visco->rowNode, d, k);
        const std::array<int, 3> edgeNodes = {visco->edgeNode1, visco->edgeNode2, visco->edgeNode3};
        const std::array<Complex, 3> terms = {visco->term2, visco->term3, visco->term4};
        const int edgeCount = std::clamp(visco->edgeNodeCount, 0, 3);
        for (int e = 0; e < edgeCount; ++e) {
            const int32_t col = EquationOf(analysis, edgeNodes[e], d, k);
            if (row != -1 && col != -1) matrix.add(row, col, terms[e]);
        }
    }
}
