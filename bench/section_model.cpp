#include "section_model.hpp"

#include <boost/make_shared.hpp>
#include <cstdio>

#include "fem/element_matrices.hpp"
#include "fem/viscous_boundary.hpp"
#include "structured_mesh.hpp"

namespace {

// Dashpots on the left and right edges, in x and y, each coupling a node to the one above it
// (below it at the top).
void AddEdgeDashpots(CAnalysisData& analysis, double width, double depth, int typeCode) {
    std::vector<int> left, right;
    for (size_t p = 0; p < analysis.nodes.size(); ++p) {
        if (analysis.nodes[p].x == 0.0) left.push_back(static_cast<int>(p));
        if (analysis.nodes[p].x == width) right.push_back(static_cast<int>(p));
    }
    for (const std::vector<int>* edge : {&left, &right}) {
        for (size_t k = 0; k < edge->size(); ++k) {
            for (int direction : {0, 1}) {
                auto c = boost::make_shared<CBCVisco>();
                c->typeCode = typeCode;
                c->rowNode = (*edge)[k];
                c->direction = direction;
                c->edgeNodeCount = 2;
                c->edgeNode1 = (*edge)[k];
                c->edgeNode2 = k + 1 < edge->size() ? (*edge)[k + 1] : (*edge)[k - 1];
                c->term2 = Complex(0.3 * depth, 0.0);
                c->term3 = Complex(0.15 * depth, 0.0);
                analysis.boundaryConds.push_back(c);
            }
        }
    }
}

}  // namespace

void BuildModel(BenchModel& m, int nodesPerElement, int equations, int lines, int mode) {
    const SectionGrid grid = SectionWithEquations(nodesPerElement, equations);
    BuildStructuredMesh(grid, ElasticMaterial(60.0, 0.05, 0.35, 1.8e-3), m.analysis);
    AddEdgeDashpots(m.analysis, grid.width, grid.depth, 101);
    if (mode == 1) AddEdgeDashpots(m.analysis, grid.width, grid.depth, 201);
    m.analysis.sideBoundaryType = mode;

    const int paddedLength = 4096;
    m.analysis.timeStep = 0.01;
    m.analysis.seismicWaves.resize(1);
    m.analysis.seismicWaves[0].acc.assign(paddedLength, 0.0);
    m.analysis.waveSpectrum.resize(paddedLength);
    for (int k = 0; k < paddedLength; ++k)
        m.analysis.waveSpectrum[k] = Complex(1e-3 / (1 + k), 0.0);
    m.analysis.frequencyCount = lines + 1;

    const size_t n = static_cast<size_t>(m.analysis.freeDofCount);
    const auto& elements = m.analysis.elements;
    m.mass = SparseComplexMatrix(n);
    m.stiffness = SparseComplexMatrix(n);
    m.inertiaLoad.resize(2 * m.analysis.nodes.size());
    AssembleInertiaLoad(elements.size(), m.analysis.nodes, elements, m.inertiaLoad);
    AssembleMassMatrix(elements.size(), m.analysis.equationMap, m.analysis.nodes, elements, m.mass);
    AssembleStiffnessMatrix(elements.size(), m.analysis.equationMap, m.analysis.nodes, elements,
                            m.stiffness);
    AssembleViscousMatrix(m.baseViscous, m.analysis, false);
    m.sideViscous = SparseComplexMatrix(n);
    if (mode == 1) AssembleViscousMatrix(m.sideViscous, m.analysis, true);
    m.sideStatic = SparseComplexMatrix(n);
    m.freeFieldMotion.assign(static_cast<size_t>(lines + 1), ComplexVector(n));
    for (auto& motion : m.freeFieldMotion)
        for (size_t k = 0; k < n; k += 2) motion[k] = Complex(1.0, 0.0);

    m.terms.side = SideTreatmentOf(mode);
    m.terms.duration = paddedLength * m.analysis.timeStep;
    m.terms.mass = &m.mass;
    m.terms.baseViscous = &m.baseViscous;
    m.terms.sideViscous = &m.sideViscous;
    m.terms.sideStatic = &m.sideStatic;
    m.terms.freeFieldMotion = &m.freeFieldMotion;
    m.terms.inertiaLoad = &m.inertiaLoad;

    std::printf("model: %d-node elements, %d x %d cells, %zu nodes, %zu equations\n",
                nodesPerElement, grid.columns, grid.layers, m.analysis.nodes.size(), n);
    std::printf("entries: stiffness %zu, mass %zu, base dashpots %zu\n", m.stiffness.EntryCount(),
                m.mass.EntryCount(), m.baseViscous.EntryCount());
}
