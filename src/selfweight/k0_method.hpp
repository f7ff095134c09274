// The k0 method of the self-weight analysis: geostatic stresses of level ground.
#pragma once

#include <array>
#include <vector>

#include "model/analysis_data.hpp"
#include "selfweight/self_weight_state.hpp"

// The weight of the ground above a point: g times the integral of density along the vertical
// from the point up through the elements of the mesh (MPa, positive). Each element is taken
// by the polygon of its nodes around its edges (mid-side nodes included); the densities are
// those the elements select.
class Overburden {
  public:
    explicit Overburden(const CAnalysisData& analysis);
    double At(double x, double y) const;

  private:
    struct Outline {
        std::vector<std::array<double, 2>> corners;  // x, y around the element
        double unitWeight = 0.0;                     // density times g (MPa/m)
    };
    // The y where the vertical x crosses the outline's edges, ascending.
    static void Crossings(const Outline& outline, double x, std::vector<double>& ys);

    std::vector<Outline> outlines_;
    // Elements by strips of equal width in x, so that a vertical meets only those of its strip.
    double xMin_ = 0.0;
    double stripWidth_ = 1.0;
    std::vector<std::vector<size_t>> strips_;
};

// Global x and y of an integration point, from the element's shape functions.
std::array<double, 2> IntegrationPointPosition(const CElement& element, const CGauss& point,
                                               const std::vector<CNode>& nodes);

// At every integration point: vertical stress -(overburden), horizontal stresses x and z K0
// times it with K0 = nu / (1 - nu) of the point's material, no shear (MPa, compression
// negative). Node displacements and strains stay zero: the method gives a stress state only.
SelfWeightState GeostaticAnalysis(const CAnalysisData& analysis);
