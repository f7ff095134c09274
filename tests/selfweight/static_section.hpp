// Test support for the self-weight analysis: soil sections of the structured grid with their
// supports given as boundary conditions, layers of their own materials, and the places of the
// integration points.
#pragma once

#include <boost/make_shared.hpp>
#include <functional>
#include <vector>

#include "model/analysis_data.hpp"
#include "selfweight/k0_method.hpp"
#include "structured_mesh.hpp"

// One soil layer: its thickness (m) and elastic material.
struct SoilLayer {
    double thickness;
    double G0;  // MPa
    double nu;
    double density;  // MPa s2/m2
};

// The grid's section with the base (y = 0) fixed and rollers on both sides (x fixed), as
// boundary conditions of the file; the surface at y = grid.depth. Layers from the surface down
// bind the elements by the height of their centre; none leaves the one material of the grid.
inline void BuildStaticSection(const SectionGrid& grid, const std::vector<SoilLayer>& layers,
                               CAnalysisData& analysis) {
    const SoilLayer top = layers.empty() ? SoilLayer{grid.depth, 60.0, 0.3, 1.8e-3} : layers[0];
    BuildStructuredMesh(grid, ElasticMaterial(top.G0, 0.02, top.nu, top.density), analysis);
    analysis.materials.clear();
    for (const SoilLayer& layer : layers)
        analysis.materials.push_back(ElasticMaterial(layer.G0, 0.02, layer.nu, layer.density));
    for (CElement& element : analysis.elements) {
        if (layers.empty()) break;
        double centre = 0.0;
        for (int node : element.nodes) centre += analysis.nodes[node].y / element.nodes.size();
        double bottom = grid.depth;
        for (size_t k = 0; k < layers.size(); ++k) {
            bottom -= layers[k].thickness;
            element.material = analysis.materials[k];
            if (centre > bottom) break;
        }
    }
    analysis.boundaryConds.clear();
    for (size_t p = 0; p < analysis.nodes.size(); ++p) {
        const CNode& node = analysis.nodes[p];
        const int code = node.y == 0.0 ? 2 : (node.x == 0.0 || node.x == grid.width) ? 0 : -1;
        if (code >= 0)
            analysis.boundaryConds.push_back(
                boost::make_shared<CBoundaryCond>(static_cast<int>(p), 0.0, 0.0, code));
    }
    analysis.sideBoundaryType = 2;
}

// Moves every node vertically so that the surface follows height(x) over the base y = 0:
// y becomes y height(x) / depth. A height linear between node columns keeps the edges straight
// and the mid-side nodes in the middle of their edges.
inline void ShapeSurface(CAnalysisData& analysis, double depth,
                         const std::function<double(double)>& height) {
    for (CNode& node : analysis.nodes) node.y *= height(node.x) / depth;
}

// Global x and y of every integration point, element by element.
inline std::vector<std::vector<std::array<double, 2>>> PointPositions(
    const CAnalysisData& analysis) {
    std::vector<std::vector<std::array<double, 2>>> places;
    for (const CElement& element : analysis.elements) {
        places.emplace_back();
        for (const CGauss& point : element.gaussPoints)
            places.back().push_back(IntegrationPointPosition(element, point, analysis.nodes));
    }
    return places;
}
