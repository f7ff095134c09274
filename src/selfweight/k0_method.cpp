#include "selfweight/k0_method.hpp"

#include <algorithm>
#include <cmath>

namespace {

// The element's nodes in their order around its edges.
std::vector<int> EdgeOrder(size_t nodeCount) {
    switch (nodeCount) {
        case 6:  // corners 1, 2, 3, then the middles of 2-3, 3-1, 1-2
            return {0, 5, 1, 3, 2, 4};
        case 8:  // corners 1 to 4, then the middles of 1-2, 2-3, 3-4, 4-1
            return {0, 4, 1, 5, 2, 6, 3, 7};
        default:
            return {0, 1, 2, 3};
    }
}

// The x of the vertical through a point, taken a hair inside its own element: a point on a
// side of its element (the 6-node rule has points at the corners) on the edge of the mesh
// would otherwise see its vertical run just outside the ground.
double VerticalInside(const CElement& element, const std::vector<CNode>& nodes, double x) {
    const size_t corners = element.nodes.size() == 6 ? 3 : 4;
    double centre = 0.0;
    for (size_t j = 0; j < corners; ++j) centre += nodes[element.nodes[j]].x / corners;
    return x + 1e-9 * (centre - x);
}

}  // namespace

std::array<double, 2> IntegrationPointPosition(const CElement& element, const CGauss& point,
                                               const std::vector<CNode>& nodes) {
    const RealVector N = element.shapeFunction->GetNVector(point);
    std::array<double, 2> xy = {0.0, 0.0};
    for (size_t j = 0; j < element.nodes.size(); ++j) {
        xy[0] += N[j] * nodes[element.nodes[j]].x;
        xy[1] += N[j] * nodes[element.nodes[j]].y;
    }
    return xy;
}

Overburden::Overburden(const CAnalysisData& analysis) {
    double xMax = 0.0;
    bool first = true;
    for (const CElement& element : analysis.elements) {
        Outline outline;
        for (int j : EdgeOrder(element.nodes.size())) {
            const CNode& node = analysis.nodes[element.nodes[j]];
            outline.corners.push_back({node.x, node.y});
            xMin_ = first ? node.x : std::min(xMin_, node.x);
            xMax = first ? node.x : std::max(xMax, node.x);
            first = false;
        }
        outline.unitWeight = element.Density() * kStandardGravity;
        outlines_.push_back(std::move(outline));
    }
    const size_t stripCount = std::max<size_t>(
        1, static_cast<size_t>(std::ceil(std::sqrt(static_cast<double>(outlines_.size())))));
    stripWidth_ = xMax > xMin_ ? (xMax - xMin_) / static_cast<double>(stripCount) : 1.0;
    strips_.assign(stripCount, {});
    auto strip = [&](double x) {
        const double s = std::floor((x - xMin_) / stripWidth_);
        return static_cast<size_t>(std::clamp(s, 0.0, static_cast<double>(stripCount - 1)));
    };
    for (size_t e = 0; e < outlines_.size(); ++e) {
        double low = outlines_[e].corners.front()[0], high = low;
        for (const auto& corner : outlines_[e].corners) {
            low = std::min(low, corner[0]);
            high = std::max(high, corner[0]);
        }
        for (size_t s = strip(low); s <= strip(high); ++s) strips_[s].push_back(e);
    }
}

void Overburden::Crossings(const Outline& outline, double x, std::vector<double>& ys) {
    ys.clear();
    const size_t n = outline.corners.size();
    for (size_t k = 0; k < n; ++k) {
        const auto& a = outline.corners[k];
        const auto& b = outline.corners[(k + 1) % n];
        // Each edge counts for x in [its lower end, its upper end): a vertical through a node
        // crosses once, a vertical edge never, and a vertical along the edge shared by two
        // elements runs through one of them only.
        if ((a[0] <= x && x < b[0]) || (b[0] <= x && x < a[0]))
            ys.push_back(a[1] + (x - a[0]) * (b[1] - a[1]) / (b[0] - a[0]));
    }
    std::sort(ys.begin(), ys.end());
}

double Overburden::At(double x, double y) const {
    if (strips_.empty()) return 0.0;
    const double s = std::floor((x - xMin_) / stripWidth_);
    const size_t strip =
        static_cast<size_t>(std::clamp(s, 0.0, static_cast<double>(strips_.size() - 1)));
    double weight = 0.0;
    std::vector<double> ys;
    for (size_t e : strips_[strip]) {
        Crossings(outlines_[e], x, ys);
        // Inside between the first and second crossing, the third and fourth, ...
        for (size_t k = 0; k + 1 < ys.size(); k += 2) {
            const double bottom = std::max(ys[k], y);
            if (ys[k + 1] > bottom) weight += outlines_[e].unitWeight * (ys[k + 1] - bottom);
        }
    }
    return weight;
}

SelfWeightState GeostaticAnalysis(const CAnalysisData& analysis) {
    const Overburden overburden(analysis);
    SelfWeightState state;
    state.displacement.assign(2 * analysis.nodes.size(), 0.0);
    state.points.resize(analysis.elements.size());
    for (size_t e = 0; e < analysis.elements.size(); ++e) {
        const CElement& element = analysis.elements[e];
        const double nu = element.material->nu;
        const double k0 = nu / (1.0 - nu);
        for (const CGauss& point : element.gaussPoints) {
            const auto [x, y] = IntegrationPointPosition(element, point, analysis.nodes);
            const double vertical = -overburden.At(VerticalInside(element, analysis.nodes, x), y);
            // A stress with no strain: the response of a zero constitutive matrix to the
            // stress as its initial state, which also forms the scalars.
            state.points[e].push_back(EvaluateStep(ConstitutiveMatrix{},
                                                   {k0 * vertical, vertical, k0 * vertical, 0.0},
                                                   0.0, 0.0, 0.0));
        }
    }
    return state;
}
