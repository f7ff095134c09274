#include "run/model_preparation.hpp"

#include <iostream>

#include "run/platform.hpp"

namespace {
constexpr int kElasticType = 5;
}  // namespace

void GivePrivateMaterials(CAnalysisData& analysis) {
    // Strain-dependent elements update their modulus and damping on their own; elastic ones
    // go on sharing.
    for (CElement& element : analysis.elements) {
        if (element.material->type != kElasticType)
            element.material.reset(element.material->Clone());
    }
}

void DispBoundary(CAnalysisData& analysis) {
    const int nodeCount = static_cast<int>(analysis.nodes.size());
    for (size_t i = 0; i < analysis.boundaryConds.size(); ++i) {
        const CBoundaryCond& condition = *analysis.boundaryConds[i];
        bool fixX = false;
        bool fixY = false;
        switch (condition.typeCode) {
            case 0:
                fixX = true;
                break;
            case 1:
                fixY = true;
                break;
            case 2:
                fixX = fixY = true;
                break;
            case 3:
            case 4:
            case 5:
            case 100:
            case 101:
            case 102:
            case 200:
            case 201:
            case 202:
                break;
            default:
                std::cout << "DispBoundary ERROR" << std::endl;
                TerminateRun(0);
        }
        if (condition.node < 0 || condition.node >= nodeCount) {
            std::cout.flush();
            std::cerr << "boundary condition " << i << ": node " << condition.node
                      << " is not in the node list of " << nodeCount << std::endl;
            TerminateRun(2);
        }
        const size_t x = 2 * static_cast<size_t>(condition.node);
        if (fixX) analysis.dofFixed[x] = 1;
        if (fixY) analysis.dofFixed[x + 1] = 1;
    }
}

void NumberEquations(CAnalysisData& analysis) {
    analysis.equationMap.assign(analysis.dofFixed.size(), -1);
    int32_t next = 0;
    for (size_t dof = 0; dof < analysis.dofFixed.size(); ++dof) {
        if (analysis.dofFixed[dof] == 0) analysis.equationMap[dof] = next++;
    }
    analysis.freeDofCount = next;
}
