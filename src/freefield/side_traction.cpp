#include "freefield/side_traction.hpp"

#include <array>
#include <cmath>
#include <map>
#include <utility>

namespace {

// Lagrange basis through the abscissae ys, and its derivative, at y.
double Basis(const std::vector<double>& ys, size_t p, double y) {
    double value = 1.0;
    for (size_t j = 0; j < ys.size(); ++j)
        if (j != p) value *= (y - ys[j]) / (ys[p] - ys[j]);
    return value;
}

double BasisSlope(const std::vector<double>& ys, size_t p, double y) {
    double slope = 0.0;
    for (size_t k = 0; k < ys.size(); ++k) {
        if (k == p) continue;
        double term = 1.0 / (ys[p] - ys[k]);
        for (size_t j = 0; j < ys.size(); ++j)
            if (j != p && j != k) term *= (y - ys[j]) / (ys[p] - ys[j]);
        slope += term;
    }
    return slope;
}

}  // namespace

std::vector<DofEntry> SideTractionMatrix(const CAnalysisData& section, const SideColumn& column,
                                         const std::vector<LayerState>& layers) {
    // Three Gauss points integrate the products of a quadratic and a linear polynomial exactly.
    const double r = std::sqrt(0.6);
    const std::array<std::pair<double, double>, 3> rule = {
        {{-r, 5.0 / 9.0}, {0.0, 8.0 / 9.0}, {r, 5.0 / 9.0}}};
    std::map<std::pair<int, int>, Complex> sums;
    for (size_t l = 0; l < column.layers.size(); ++l) {
        const SideLayer& layer = column.layers[l];
        std::vector<double> ys;
        for (int n : layer.nodes) ys.push_back(section.nodes[static_cast<size_t>(n)].y);
        const double middle = 0.5 * (layer.top + layer.bottom);
        const double half = 0.5 * layer.Thickness();
        const Complex factor = column.NormalX() * layers[l].shearModulus;
        for (size_t p = 0; p < ys.size(); ++p) {
            for (size_t q = 0; q < ys.size(); ++q) {
                double integral = 0.0;
                for (const auto& [s, w] : rule) {
                    const double y = middle + half * s;
                    integral += w * half * Basis(ys, p, y) * BasisSlope(ys, q, y);
                }
                const int row = 2 * layer.nodes[p] + 1, col = 2 * layer.nodes[q];
                sums[{row, col}] += factor * integral;
            }
        }
    }
    std::vector<DofEntry> entries;
    entries.reserve(sums.size());
    for (const auto& [place, value] : sums) entries.push_back({place.first, place.second, value});
    return entries;
}
