#include "element/shape_function.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

using Coordinates = std::vector<std::pair<double, double>>;

// For each kind: partition of unity, one at its own node and zero at the others, derivatives
// that match differences of the functions, and an N matrix that interleaves x and y.
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
            const RealVector xp = shape->GetNVector(CNode(xi + h, eta, 0));
            const RealVector xm = shape->GetNVector(CNode(xi - h, eta, 0));
            const RealVector ep = shape->GetNVector(CNode(xi, eta + h, 0));
            const RealVector em = shape->GetNVector(CNode(xi, eta - h, 0));
            ASSERT_EQ(Nm.cols, 2 * n);
            double sum = 0.0, byXi = 0.0, byEta = 0.0;
            for (size_t j = 0; j < n; ++j) {
                sum += N[j];
                byXi += dN(0, j);
                byEta += dN(1, j);
                EXPECT_NEAR(dN(0, j), (xp[j] - xm[j]) / (2 * h), 1e-8);
                EXPECT_NEAR(dN(1, j), (ep[j] - em[j]) / (2 * h), 1e-8);
                EXPECT_EQ(Nm(0, 2 * j), N[j]);
                EXPECT_EQ(Nm(1, 2 * j + 1), N[j]);
                EXPECT_EQ(Nm(0, 2 * j + 1), 0.0);
                EXPECT_EQ(Nm(1, 2 * j), 0.0);
            }
            EXPECT_NEAR(sum, 1.0, 1e-15);
            EXPECT_NEAR(byXi, 0.0, 1e-15);
            EXPECT_NEAR(byEta, 0.0, 1e-15);
        }
    }
}

}  // namespace
