#include "element/shape_function.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

struct Kind {
    std::shared_ptr<DAT_ShapeFunction> shape;
    std::vector<std::pair<double, double>> nodes;  // natural coordinates in node order
};

std::vector<Kind> AllKinds() {
    return {
        {std::make_shared<IsoParametricQuadSquare>(), {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}},
        {std::make_shared<IsoParametricSecondSquare>(),
         {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {0, -1}, {1, 0}, {0, 1}, {-1, 0}}},
        {std::make_shared<ShapeFuncOfSecondTriangle>(),
         {{1, 0}, {0, 1}, {0, 0}, {0, 0.5}, {0.5, 0}, {0.5, 0.5}}},
    };
}

const std::vector<std::pair<double, double>> kSamples = {{0.1, 0.2}, {-0.3, 0.7}, {0.25, 0.05}};

TEST(ShapeFunctions, EachIsOneAtItsOwnNodeAndZeroAtTheOthers) {
    for (const Kind& kind : AllKinds()) {
        const int n = kind.shape->nodeCount;
        ASSERT_EQ(kind.nodes.size(), static_cast<size_t>(n));
        for (int k = 0; k < n; ++k) {
            const RealVector N =
                kind.shape->GetNVector(CNode(kind.nodes[k].first, kind.nodes[k].second, 0));
            ASSERT_EQ(N.size(), static_cast<size_t>(n));
            for (int j = 0; j < n; ++j)
                EXPECT_NEAR(N[j], j == k ? 1.0 : 0.0, 1e-15) << "n=" << n << " node " << k;
        }
    }
}

TEST(ShapeFunctions, SumToOneAndDerivativeRowsSumToZero) {
    for (const Kind& kind : AllKinds()) {
        for (auto [xi, eta] : kSamples) {
            const CNode p(xi, eta, 0);
            const RealVector N = kind.shape->GetNVector(p);
            const RealMatrix dN = kind.shape->GetdNMatrix(p);
            double sum = 0.0, byXi = 0.0, byEta = 0.0;
            for (uint32_t j = 0; j < N.size(); ++j) {
                sum += N[j];
                byXi += dN(0, j);
                byEta += dN(1, j);
            }
            EXPECT_NEAR(sum, 1.0, 1e-15);
            EXPECT_NEAR(byXi, 0.0, 1e-15);
            EXPECT_NEAR(byEta, 0.0, 1e-15);
        }
    }
}

TEST(ShapeFunctions, DerivativesMatchDifferencesOfTheFunctions) {
    const double step = 1e-6;
    for (const Kind& kind : AllKinds()) {
        for (auto [xi, eta] : kSamples) {
            const RealMatrix dN = kind.shape->GetdNMatrix(CNode(xi, eta, 0));
            const RealVector xp = kind.shape->GetNVector(CNode(xi + step, eta, 0));
            const RealVector xm = kind.shape->GetNVector(CNode(xi - step, eta, 0));
            const RealVector ep = kind.shape->GetNVector(CNode(xi, eta + step, 0));
            const RealVector em = kind.shape->GetNVector(CNode(xi, eta - step, 0));
            for (uint32_t j = 0; j < dN.cols; ++j) {
                EXPECT_NEAR(dN(0, j), (xp[j] - xm[j]) / (2 * step), 1e-8);
                EXPECT_NEAR(dN(1, j), (ep[j] - em[j]) / (2 * step), 1e-8);
            }
        }
    }
}

TEST(ShapeFunctions, TriangleNMatrixInterleavesTheComponents) {
    const ShapeFuncOfSecondTriangle triangle;
    const RealMatrix N = triangle.GetNMatrix(CNode(0.2, 0.3, 0));
    ASSERT_EQ(N.rows, 2u);
    ASSERT_EQ(N.cols, 12u);
    const RealVector values = triangle.GetNVector(CNode(0.2, 0.3, 0));
    for (uint32_t j = 0; j < 6; ++j) {
        EXPECT_EQ(N(0, 2 * j), values[j]);
        EXPECT_EQ(N(0, 2 * j + 1), 0.0);
        EXPECT_EQ(N(1, 2 * j), 0.0);
        EXPECT_EQ(N(1, 2 * j + 1), values[j]);
    }
}

TEST(ShapeFunctions, VectorFormsEqualPointForms) {
    const RealVector xiEta{0.3, -0.4};
    const CNode p(0.3, -0.4, 0);
    for (const Kind& kind : AllKinds()) {
        EXPECT_EQ(kind.shape->GetNMatrix(xiEta).data, kind.shape->GetNMatrix(p).data);
        EXPECT_EQ(kind.shape->GetNRow(xiEta).data, kind.shape->GetNVector(p).data);
        EXPECT_EQ(kind.shape->GetNRow(p).rows, 1u);
        EXPECT_EQ(kind.shape->GetNVector(xiEta).data, kind.shape->GetNVector(p).data);
        EXPECT_EQ(kind.shape->GetdNMatrix(xiEta).data, kind.shape->GetdNMatrix(p).data);
    }
}

}  // namespace
