#include "solve/model_preparation.hpp"

#include "base/console.hpp"
#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "input/model_readers.hpp"
#include "solve/model_check.hpp"

void GivePrivateMaterials(CAnalysisData& analysis) {
    // Strain-dependent elements update their modulus and damping on their own; elastic ones
    // go on sharing.
    for (CElement& element : analysis.elements) {
        if (element.material->StrainDependent()) element.material.reset(element.material->Clone());
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
                StopRun(ExitStatus::kUnknownBoundaryCode, {"DispBoundary ERROR\n"});
        }
        if (condition.node < 0 || condition.node >= nodeCount) {
            StopOnBadModel("boundary condition " + std::to_string(i) + ": node " +
                           std::to_string(condition.node) + " is not in the node list of " +
                           std::to_string(nodeCount));
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

void PrepareModel(CAnalysisData& analysis, const std::string& selfWeightPath) {
    const size_t dofCount = 2 * analysis.nodes.size();
    analysis.dofFixed.assign(dofCount, 0);
    analysis.equationMap.assign(dofCount, 0);

    GivePrivateMaterials(analysis);
    ReadSelfWeightStress(analysis, selfWeightPath);
    // A model that would give results that are not finite, zero or wrong stops here, before
    // anything is written.
    const std::vector<ModelFault> faults = CheckModel(analysis);
    if (!faults.empty()) StopOnBadModel(FaultMessages(faults));

    DispBoundary(analysis);
    NumberEquations(analysis);
}
