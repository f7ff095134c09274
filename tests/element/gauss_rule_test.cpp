#include "element/gauss_rule.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <tuple>
#include <vector>

namespace {

double Integrate(const DefaultGauss& rule, const std::function<double(double, double)>& f) {
    double sum = 0.0;
    for (const CGauss& p : rule.points) sum += p.weight * f(p.x, p.y);
    return sum;
}

// Squares integrate over 4, the 7- and 13-point triangles over 0.5, small triangle rules to 1.
TEST(GaussRules, PointCountsWeightSumsAndExactPolynomials) {
    const auto one = [](double, double) { return 1.0; };
    const struct {
        int argument, nodes, count, points;
        std::function<double(double, double)> f;
        double integral, tolerance;
    } cases[] = {
        {2, 4, 4, 4, one, 4.0, 1e-15},
        {3, 8, 9, 9, [](double x, double y) { return std::pow(x, 4) * y * y; }, 0.4 * 2 / 3, 1e-14},
        {4, 4, 16, 16, [](double x, double y) { return std::pow(x, 6) * y * y; }, 4.0 / 21, 1e-14},
        {7, 6, 7, 7, [](double x, double y) { return x * x * y; }, 1.0 / 60, 1e-15},
        {7, 6, 7, 7, one, 0.5, 1e-15},
        {1, 6, 1, 1, one, 1.0, 1e-15},
        {2, 6, 2, 3, one, 1.0, 1e-15},  // a triangle rule counts its argument, not its points
        {3, 6, 3, 4, one, 0.5, 1e-15},
        {13, 6, 13, 13, [](double x, double y) { return x * x * y * y; }, 1.0 / 180, 1e-10},
        {13, 6, 13, 13, one, 0.5, 1e-10},  // the tabled constants carry 13 digits
        {5, 6, 5, 0, one, 0.0, 0.0},
        {2, 5, 0, 0, one, 0.0, 0.0},  // no element of five nodes
        {0, 4, 0, 0, one, 0.0, 0.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.argument << " for " << c.nodes << " nodes");
        const DefaultGauss rule(c.argument, c.nodes);
        EXPECT_EQ(rule.count, c.count);
        ASSERT_EQ(rule.points.size(), static_cast<size_t>(c.points));
        EXPECT_NEAR(Integrate(rule, c.f), c.integral, c.tolerance);
    }
}

TEST(GaussRules, PointOrderOfTheTabledAndTensorProductRules) {
    const double a = 1.0 / std::sqrt(3.0), b = std::sqrt(0.6);
    const DefaultGauss two(2, 4), three(3, 8), four(4, 4), seven(7, 6);
    // The third point of 2 x 2 stands at the corner of node 4, the fourth at that of node 3.
    EXPECT_EQ(std::tie(two.points[2].x, two.points[2].y, two.points[3].x),
              std::make_tuple(-a, a, a));
    EXPECT_EQ(
        std::tie(three.points[4].x, three.points[4].y, three.points[5].x, three.points[8].weight),
        std::make_tuple(0.0, -b, -b, 0.7901234567901234));
    EXPECT_EQ(std::tie(seven.points[3].x, seven.points[6].weight), std::make_tuple(1.0, 0.225));
    std::vector<double> r, w;
    GaussLegendre(4, r, w);  // orders without a table: x outer
    EXPECT_EQ(std::tie(four.points[1].x, four.points[1].y, four.points[4].x),
              std::make_tuple(r[0], r[1], r[1]));
}

}  // namespace
