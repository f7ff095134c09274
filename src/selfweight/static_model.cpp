#include "selfweight/static_model.hpp"

#include <cmath>
#include <map>
#include <string>

#include "base/run_stop.hpp"
#include "fem/element_matrices.hpp"
#include "solve/model_preparation.hpp"

namespace {

std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

// The material's number from 1 in the material list; 0 for one that is not in it.
size_t MaterialNumber(const CAnalysisData& analysis, const DAT_Material* material) {
    for (size_t m = 0; m < analysis.materials.size(); ++m)
        if (analysis.materials[m].get() == material) return m + 1;
    return 0;
}

void CheckMaterial(const CAnalysisData& analysis, const CElement& element, size_t elementNumber) {
    const DAT_Material& material = *element.material;
    const std::string name = "material " + std::to_string(MaterialNumber(analysis, &material));
    const double density = element.Density();
    // Negated comparisons, so that NaN fails them too.
    if (!(density > 0.0)) {
        StopOnBadModel(name + ": its " + (element.usesFirstDensity ? "first" : "second") +
                       " density is " + Number(density) + ", not positive (element " +
                       std::to_string(elementNumber) + " takes its weight from it)");
    }
    if (!(material.G0 > 0.0))
        StopOnBadModel(name + ": its shear modulus G0 is " + Number(material.G0) +
                       ", not positive");
    if (!(material.nu > -1.0 && material.nu < 0.5)) {
        StopOnBadModel(name + ": its Poisson's ratio is " + Number(material.nu) +
                       ", outside the range above -1 and below 0.5");
    }
}

void CheckJacobian(const CAnalysisData& analysis, const CElement& element, size_t elementNumber) {
    ComplexMatrix B;
    for (size_t g = 0; g < element.gaussPoints.size(); ++g) {
        const double detJ = StrainMatrixAt(element, element.gaussPoints[g], analysis.nodes, B);
        if (!(detJ > 0.0)) {
            StopOnBadModel("element " + std::to_string(elementNumber) +
                           ": the Jacobian is not positive at integration point " +
                           std::to_string(g + 1) + " (" + Number(detJ) +
                           "): the element is folded, has no area, or its nodes are not in "
                           "counter-clockwise order");
        }
    }
}

}  // namespace

void CheckStaticModel(const CAnalysisData& analysis) {
    for (size_t e = 0; e < analysis.elements.size(); ++e) {
        CheckMaterial(analysis, analysis.elements[e], e + 1);
        CheckJacobian(analysis, analysis.elements[e], e + 1);
    }
}

void MarkStaticSupports(CAnalysisData& analysis) {
    const size_t dofCount = 2 * analysis.nodes.size();
    analysis.dofFixed.assign(dofCount, 0);
    DispBoundary(analysis);
    // The rows of the dashpot matrices that the dynamic analysis assembles.
    const bool sideDashpots = analysis.Sides() == SideTreatment::kViscous;
    for (const auto& condition : analysis.boundaryConds) {
        const auto* dashpot = dynamic_cast<const CBCVisco*>(condition.get());
        if (dashpot == nullptr || dashpot->typeCode < 100) continue;
        if (dashpot->typeCode >= 200 && !sideDashpots) continue;
        const size_t direction = dashpot->direction == 0 ? 0 : 1;
        analysis.dofFixed[2 * static_cast<size_t>(dashpot->rowNode) + direction] = 1;
    }
    NumberEquations(analysis);

    // Idle nodes are fixed by the reader; only the nodes of elements can hold the section.
    bool held[2] = {false, false};
    for (const CElement& element : analysis.elements)
        for (int node : element.nodes)
            for (size_t d = 0; d < 2; ++d)
                held[d] = held[d] || analysis.dofFixed[2 * static_cast<size_t>(node) + d] != 0;
    if (!held[0] || !held[1]) {
        const std::string free = !held[0] && !held[1] ? "x or in y" : !held[0] ? "x" : "y";
        StopOnBadModel("the mesh has no support in " + free +
                       ": the boundary file fixes no node of an element in that direction, so "
                       "the section is free to move under its weight");
    }
}

std::vector<CElement> StaticElements(const CAnalysisData& analysis) {
    std::map<const DAT_Material*, boost::shared_ptr<DAT_Material>> elastic;
    std::vector<CElement> elements = analysis.elements;
    for (CElement& element : elements) {
        boost::shared_ptr<DAT_Material>& copy = elastic[element.material.get()];
        if (!copy) {
            copy.reset(element.material->Clone());
            copy->G = copy->G0;
            copy->h = 0.0;
            copy->UpdateModuli();
        }
        element.material = copy;
    }
    return elements;
}
