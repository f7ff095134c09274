#include "selfweight/gravity_method.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/run_stop.hpp"
#include "fem/element_matrices.hpp"
#include "selfweight/cholesky_solve.hpp"
#include "selfweight/static_model.hpp"

namespace {

// The node and direction of an equation, for a message.
std::string DegreeOfFreedomOf(const CAnalysisData& analysis, int64_t equation) {
    for (size_t dof = 0; dof < analysis.equationMap.size(); ++dof) {
        if (analysis.equationMap[dof] == equation)
            return "node " + std::to_string(dof / 2 + 1) + (dof % 2 == 0 ? " in x" : " in y");
    }
    return "an unknown degree of freedom";
}

[[noreturn]] void StopOnSingularSystem(const CAnalysisData& analysis, const CholeskySolve& solve) {
    const std::string where = solve.failedEquation >= 0
                                  ? " (the factorisation broke down at " +
                                        DegreeOfFreedomOf(analysis, solve.failedEquation) + ")"
                                  : "";
    StopOnBadModel("the static system is singular" + where +
                   ": the supports leave part of the section free to move as a rigid body or a "
                   "mechanism; fix more nodes in the boundary file");
}

// Strain and stress of every integration point from the node displacements, and the internal
// nodal forces: the sum over the points of w detJ B^T s, x and y of every node.
void RecoverPointStates(const CAnalysisData& analysis, const std::vector<CElement>& elements,
                        SelfWeightState& state, std::vector<double>& internalForce) {
    internalForce.assign(2 * analysis.nodes.size(), 0.0);
    state.points.assign(elements.size(), {});
    ComplexMatrix B;
    for (size_t e = 0; e < elements.size(); ++e) {
        const CElement& element = elements[e];
        const ConstitutiveMatrix D(element.material->D);
        const size_t dofs = 2 * element.nodes.size();
        std::vector<double> ue(dofs);
        for (size_t k = 0; k < dofs; ++k)
            ue[k] = state.displacement[2 * static_cast<size_t>(element.nodes[k / 2]) + k % 2];
        for (const CGauss& point : element.gaussPoints) {
            const double detJ = StrainMatrixAt(element, point, analysis.nodes, B);
            double strain[4] = {};
            for (uint32_t r = 0; r < 4; ++r)
                for (size_t k = 0; k < dofs; ++k) strain[r] += B(r, k).real() * ue[k];
            const StepResponse response =
                EvaluateStep(D, Vector4{}, strain[0], strain[1], strain[3]);
            state.points[e].push_back(response);
            const double scale = point.weight * detJ;
            for (size_t k = 0; k < dofs; ++k) {
                double sum = 0.0;
                for (uint32_t r = 0; r < 4; ++r) sum += B(r, k).real() * response.stress[r];
                internalForce[2 * static_cast<size_t>(element.nodes[k / 2]) + k % 2] += scale * sum;
            }
        }
    }
}

StaticBalance Balance(const CAnalysisData& analysis, const std::vector<double>& load,
                      const std::vector<double>& internalForce) {
    StaticBalance balance;
    for (size_t dof = 0; dof < load.size(); ++dof) {
        const double outOfBalance = internalForce[dof] - load[dof];
        if (dof % 2 == 1) balance.weight -= load[dof];
        if (analysis.equationMap[dof] < 0) {
            (dof % 2 == 0 ? balance.reactionX : balance.reactionY) += outOfBalance;
        } else {
            balance.largestResidual = std::max(balance.largestResidual, std::abs(outOfBalance));
        }
    }
    return balance;
}

}  // namespace

std::vector<double> GravityLoad(const CAnalysisData& analysis) {
    // The inertia load of a unit horizontal acceleration holds -(integral of rho N) in the x
    // place of every node: g times it, moved to y, is the weight.
    ComplexVector inertia(2 * analysis.nodes.size());
    AssembleInertiaLoad(analysis.elements.size(), analysis.nodes, analysis.elements, inertia);
    std::vector<double> load(inertia.size(), 0.0);
    for (size_t p = 0; p < analysis.nodes.size(); ++p)
        load[2 * p + 1] = kStandardGravity * inertia[2 * p].real();
    return load;
}

SelfWeightState GravityAnalysis(CAnalysisData& analysis) {
    MarkStaticSupports(analysis);
    const std::vector<CElement> elements = StaticElements(analysis);
    SparseComplexMatrix stiffness(static_cast<size_t>(analysis.freeDofCount));
    AssembleStiffnessMatrix(elements.size(), analysis.equationMap, analysis.nodes, elements,
                            stiffness);

    const std::vector<double> load = GravityLoad(analysis);
    std::vector<double> rhs(static_cast<size_t>(analysis.freeDofCount), 0.0);
    for (size_t dof = 0; dof < load.size(); ++dof)
        if (analysis.equationMap[dof] >= 0) rhs[analysis.equationMap[dof]] = load[dof];
    const CholeskySolve solve =
        SolveSymmetricPositiveDefinite(stiffness, rhs, kSmallestReciprocalCondition);
    if (!solve.solved) StopOnSingularSystem(analysis, solve);

    SelfWeightState state;
    state.displacement.assign(load.size(), 0.0);
    for (size_t dof = 0; dof < load.size(); ++dof)
        if (analysis.equationMap[dof] >= 0)
            state.displacement[dof] = solve.x[analysis.equationMap[dof]];
    std::vector<double> internalForce;
    RecoverPointStates(analysis, elements, state, internalForce);
    state.balance = Balance(analysis, load, internalForce);
    return state;
}
