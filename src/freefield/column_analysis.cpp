#include "freefield/column_analysis.hpp"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cmath>
#include <limits>
#include <memory>

#include "base/run_stop.hpp"
#include "element/gauss_rule.hpp"
#include "element/shape_function.hpp"
#include "solve/model_preparation.hpp"
#include "solve/solution_stage.hpp"

namespace {

constexpr int kBaseDashpotCode = 100;

// The base dashpot rows in x (direction 0) or y: the sum of their terms over the width that
// their nodes span, and whether one of them is a row of the given node.
struct BaseDashpots {
    Complex total;
    double xMin = std::numeric_limits<double>::infinity();
    double xMax = -std::numeric_limits<double>::infinity();
    bool onNode = false;
};

BaseDashpots BaseDashpotsOf(const CAnalysisData& section, bool inX, int node) {
    BaseDashpots found;
    const int nodeCount = static_cast<int>(section.nodes.size());
    for (const auto& condition : section.boundaryConds) {
        if (condition->typeCode < 100 || condition->typeCode >= 200) continue;
        const auto* visco = dynamic_cast<const CBCVisco*>(condition.get());
        if (visco == nullptr || (visco->direction == 0) != inX) continue;
        found.onNode = found.onNode || visco->rowNode == node;
        const int edge[3] = {visco->edgeNode1, visco->edgeNode2, visco->edgeNode3};
        const Complex terms[3] = {visco->term2, visco->term3, visco->term4};
        const int count = std::clamp(visco->edgeNodeCount, 0, 3);
        for (int e = -1; e < count; ++e) {
            const int n = e < 0 ? visco->rowNode : edge[e];
            if (n < 0 || n >= nodeCount) continue;
            found.xMin = std::min(found.xMin, section.nodes[static_cast<size_t>(n)].x);
            found.xMax = std::max(found.xMax, section.nodes[static_cast<size_t>(n)].x);
        }
        for (int e = 0; e < count; ++e) found.total += terms[e];
    }
    return found;
}

// One row of a consistent base dashpot of the column.
boost::shared_ptr<CBCVisco> DashpotRow(int row, const std::vector<int>& edge,
                                       const std::vector<Complex>& terms) {
    auto visco = boost::make_shared<CBCVisco>();
    visco->typeCode = kBaseDashpotCode;
    visco->node = visco->rowNode = row;
    visco->direction = 0;
    visco->edgeNodeCount = static_cast<int>(edge.size());
    visco->edgeNode1 = edge[0];
    visco->edgeNode2 = edge[1];
    visco->edgeNode3 = edge.size() > 2 ? edge[2] : -1;
    visco->term2 = terms[0];
    visco->term3 = terms[1];
    visco->term4 = terms.size() > 2 ? terms[2] : Complex();
    return visco;
}

CElement ColumnElement(const CElement& edgeElement, std::vector<int> nodes) {
    const int n = static_cast<int>(nodes.size());
    CElement element;
    element.nodes = std::move(nodes);
    if (n == 4)
        element.shapeFunction = boost::make_shared<IsoParametricQuadSquare>();
    else
        element.shapeFunction = boost::make_shared<IsoParametricSecondSquare>();
    element.gaussRule = boost::make_shared<DefaultGauss>(n == 4 ? 2 : 3, n);
    element.gaussPoints = element.gaussRule->points;
    element.gaussCount = static_cast<int>(element.gaussPoints.size());
    element.ruleCount = element.gaussRule->count;
    const boost::shared_ptr<DAT_Material>& material = edgeElement.material;
    element.material = material->StrainDependent()
                           ? boost::shared_ptr<DAT_Material>(material->Clone())
                           : material;
    element.usesFirstDensity = edgeElement.usesFirstDensity;
    return element;
}

}  // namespace

SideBase FindColumnBase(const CAnalysisData& section, const SideColumn& column) {
    SideBase base;
    const int bottom = column.BaseNode();
    const size_t x = 2 * static_cast<size_t>(bottom);
    base.fixedInY = section.dofFixed[x + 1] == 1;
    if (section.dofFixed[x] == 1) return base;

    const std::string where = std::string("the bottom node of the ") + EdgeName(column.edge) +
                              " edge (node " + std::to_string(bottom + 1) + ")";
    const BaseDashpots inX = BaseDashpotsOf(section, true, bottom);
    if (!inX.onNode)
        StopOnBadModel(where +
                       " is neither fixed in x nor held by a base dashpot in x: the free-field "
                       "column would have no base");
    if (!(inX.xMax > inX.xMin))
        StopOnBadModel(where + " is held by base dashpots that span no width of the base");
    base.rigid = false;
    base.dashpotPerLength = inX.total / (inX.xMax - inX.xMin);
    const BaseDashpots inY = BaseDashpotsOf(section, false, bottom);
    if (inY.xMax > inY.xMin) base.dashpotPerLengthY = inY.total / (inY.xMax - inY.xMin);
    return base;
}

void BuildColumnModel(const CAnalysisData& section, const SideColumn& column,
                      const SideBase& base, double width, ColumnModel& model) {
    CAnalysisData& a = model.analysis;
    a.clear(1);
    a.timeStep = section.timeStep;
    a.tolerance = section.tolerance;
    a.iterationLimit = section.iterationLimit;
    a.cutoffFrequency = section.cutoffFrequency;
    a.frequencyCount = section.frequencyCount;
    a.effectiveStrainRatio = section.effectiveStrainRatio;
    a.sideBoundaryType = 2;  // a column has no sides of its own to treat
    a.seismicWaves = section.seismicWaves;
    a.waveSpectrum = section.waveSpectrum;
    if (!a.seismicWaves.empty())
        a.transformHandle = std::make_unique<FourierTransform>(a.seismicWaves.front().acc.size());

    // Levels of the column, top down: every edge node. Layer boundaries carry a node at the
    // left, the right and, for 3-node layers, the middle; the middle level of a 3-node layer
    // only the left and the right.
    const bool quadratic = column.NodesPerLayer() == 3;
    const size_t levels = column.nodes.size();
    model.edgeNodeAt.assign(levels, -1);
    std::vector<int> middleAt(levels, -1), rightAt(levels, -1);
    for (size_t k = 0; k < levels; ++k) {
        const double y = section.nodes[static_cast<size_t>(column.nodes[k])].y;
        const bool boundary = !quadratic || k % 2 == 0;
        model.edgeNodeAt[k] = static_cast<int>(a.nodes.size());
        a.nodes.emplace_back(0.0, y, 0.0);
        if (quadratic && boundary) {
            middleAt[k] = static_cast<int>(a.nodes.size());
            a.nodes.emplace_back(0.5 * width, y, 0.0);
        }
        rightAt[k] = static_cast<int>(a.nodes.size());
        a.nodes.emplace_back(width, y, 0.0);
    }

    const int step = quadratic ? 2 : 1;
    for (size_t l = 0; l < column.layers.size(); ++l) {
        const size_t t = l * step, b = t + step;  // levels of the layer's top and bottom
        const CElement& edgeElement =
            section.elements[static_cast<size_t>(column.layers[l].element)];
        std::vector<int> nodes = {model.edgeNodeAt[b], rightAt[b], rightAt[t], model.edgeNodeAt[t]};
        if (quadratic) {
            const size_t m = t + 1;
            nodes.insert(nodes.end(), {middleAt[b], rightAt[m], middleAt[t], model.edgeNodeAt[m]});
        }
        a.elements.push_back(ColumnElement(edgeElement, std::move(nodes)));
    }

    const size_t dofs = 2 * a.nodes.size();
    a.dofFixed.assign(dofs, 0);
    for (size_t n = 0; n < a.nodes.size(); ++n) a.dofFixed[2 * n + 1] = 1;
    const size_t bottom = levels - 1;
    std::vector<int> baseNodes = {model.edgeNodeAt[bottom]};
    if (quadratic) baseNodes.push_back(middleAt[bottom]);
    baseNodes.push_back(rightAt[bottom]);
    if (base.rigid) {
        for (int n : baseNodes) a.dofFixed[2 * static_cast<size_t>(n)] = 1;
    } else {
        // The consistent dashpot matrix of the column's base edge: c w / 6 [2 1; 1 2] for two
        // nodes, c w / 30 [4 2 -1; 2 16 2; -1 2 4] for three (left, middle, right).
        const Complex c = base.dashpotPerLength * width;
        const std::vector<std::vector<double>> weights =
            quadratic ? std::vector<std::vector<double>>{{4, 2, -1}, {2, 16, 2}, {-1, 2, 4}}
                      : std::vector<std::vector<double>>{{2, 1}, {1, 2}};
        const double divisor = quadratic ? 30.0 : 6.0;
        for (size_t r = 0; r < baseNodes.size(); ++r) {
            std::vector<Complex> terms;
            for (double w : weights[r]) terms.push_back(c * (w / divisor));
            a.boundaryConds.push_back(DashpotRow(baseNodes[r], baseNodes, terms));
        }
    }
    NumberEquations(a);
}

ColumnResponse SolveColumn(const CAnalysisData& section, const SideColumn& column,
                           bool equivalentLinear) {
    const SideBase base = FindColumnBase(section, column);
    ColumnModel model;
    // The width is free: the column shears alike across it. One metre keeps the numbers of the
    // column of the order of those of the section.
    BuildColumnModel(section, column, base, 1.0, model);
    RunSolution(model.analysis, equivalentLinear, std::string());

    ColumnResponse response;
    response.base = base;
    const size_t lines = static_cast<size_t>(std::max(section.frequencyCount, 0));
    for (int n : model.edgeNodeAt) {
        const ComplexVector& spectrum = model.analysis.nodes[static_cast<size_t>(n)].dispX;
        std::vector<Complex> motion(lines);
        for (size_t i = 1; i < lines && i < spectrum.size(); ++i) motion[i] = spectrum[i];
        response.motion.push_back(std::move(motion));
    }
    for (size_t l = 0; l < column.layers.size(); ++l) {
        const CElement& element = model.analysis.elements[l];
        const DAT_Material& material = *element.material;
        LayerState layer;
        layer.thickness = column.layers[l].Thickness();
        layer.density = element.Density();
        layer.shearModulus = material.Gstar;
        layer.poissonRatio = material.nuUsed;
        response.layers.push_back(layer);
    }
    return response;
}
