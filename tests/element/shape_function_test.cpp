#include "element/shape_function.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

using Coordinates = std::vector<std::pair<double, double>>;

// Partition of unity, one at the own node, derivatives matching differences, x and y interleaved.
TEST(ShapeFunctions, AreANodalPartitionOfUnityWithMatchingDerivatives) {
    const std::pair<std::shared_ptr<DAT_ShapeFunction>, Coordinates> kinds[] = {
        {std::make_shared<IsoParametricQuadSquare>(), {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}},
        {std::make_shared<IsoParametricSecondSquare>(),
         {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {0, -1}, {1, 0}, {0, 1}, {-1, 0}}},
        {std::make_shared<ShapeFuncOfSecondTriangle>(),
         {{1, 0}, {0, 1}, {0, 0}, {0, 0.5}, {0.5, 0}, {0.5, 0.5}}},
    };
    const double h = 1e-6;
    for (const auto& [shape, nodes] : kinds) {
        const size_t n = nodes.size();
        SCOPED_TRACE(n);
        ASSERT_EQ(shape->nodeCount, static_cast<int>(n));
        for (size_t k = 0; k < n; ++k) {
            const RealVector N = shape->GetNVector(CNode(nodes[k].first, nodes[k].second, 0));
            ASSERT_EQ(N.size(), n);
            for (size_t j = 0; j < n; ++j) EXPECT_NEAR(N[j], j == k ? 1.0 : 0.0, 1e-15) << k;
        }
        for (auto [xi, eta] : Coordinates{{0.1, 0.2}, {-0.3, 0.7}, {0.25, 0.05}}) {
            const RealVector N = shape->GetNVector(CNode(xi, eta, 0));
            const RealMatrix dN = shape->GetdNMatrix(RealVector{xi, eta});
            const RealMatrix Nm = shape->GetNMatrix(RealVector{xi, eta});
            ASSERT_EQ(Nm.cols, 2 * n);
            double sums[3] = {};
            for (int d = 0; d < 2; ++d) {
                const RealVector p = shape->GetNVector(CNode(xi + h * (1 - d), eta + h * d, 0));
                const RealVector m = shape->GetNVector(CNode(xi - h * (1 - d), eta - h * d, 0));
                for (size_t j = 0; j < n; ++j) {
                    EXPECT_NEAR(dN(d, j), (p[j] - m[j]) / (2 * h), 1e-8);
                    EXPECT_EQ(Nm(d, 2 * j + d), N[j]);
                    EXPECT_EQ(Nm(d, 2 * j + 1 - d), 0.0);
                    sums[d] += dN(d, j);
                    sums[2] += d * N[j];
                }
            }
            EXPECT_NEAR(sums[0], 0.0, 1e-15);
            EXPECT_NEAR(sums[1], 0.0, 1e-15);
            EXPECT_NEAR(sums[2], 1.0, 1e-15);
        }
    }
}

}  // namespace
