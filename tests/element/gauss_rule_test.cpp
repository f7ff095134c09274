#include "element/gauss_rule.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

double WeightSum(const DefaultGauss& rule) {
    double sum = 0.0;
    for (const CGauss& p : rule.points) sum += p.weight;
    return sum;
}

double Integrate(const DefaultGauss& rule, const std::function<double(double, double)>& f) {
    double sum = 0.0;
    for (const CGauss& p : rule.points) sum += p.weight * f(p.x, p.y);
    return sum;
}

TEST(QuadrilateralRule, TabledOrdersCoverTheSquareInTheirPointOrder) {
    const DefaultGauss two(2, 4);
    ASSERT_EQ(two.count, 4);
    ASSERT_EQ(two.points.size(), 4u);
    EXPECT_DOUBLE_EQ(WeightSum(two), 4.0);
    const double a = 1.0 / std::sqrt(3.0);
    // The third point stands at the corner of node 4, the fourth at that of node 3.
    EXPECT_EQ(two.points[2].x, -a);
    EXPECT_EQ(two.points[2].y, a);
    EXPECT_EQ(two.points[3].x, a);

    const DefaultGauss three(3, 8);
    ASSERT_EQ(three.count, 9);
    EXPECT_DOUBLE_EQ(WeightSum(three), 4.0);
    EXPECT_EQ(three.points[4].x, 0.0);
    EXPECT_EQ(three.points[4].y, -std::sqrt(0.6));
    EXPECT_EQ(three.points[5].x, -std::sqrt(0.6));
    EXPECT_EQ(three.points[8].weight, 0.7901234567901234);
    // Degree 5 in each direction is integrated exactly.
    EXPECT_NEAR(Integrate(three, [](double x, double y) { return x * x * x * x * y * y; }),
                (2.0 / 5.0) * (2.0 / 3.0), 1e-14);
}

TEST(QuadrilateralRule, OtherOrdersAreTensorProductsWithXOuter) {
    const DefaultGauss four(4, 4);
    ASSERT_EQ(four.points.size(), 16u);
    std::vector<double> r, w;
    GaussLegendre(4, r, w);
    EXPECT_EQ(four.points[1].x, r[0]);
    EXPECT_EQ(four.points[1].y, r[1]);
    EXPECT_EQ(four.points[4].x, r[1]);
    EXPECT_NEAR(Integrate(four, [](double x, double y) { return x * x * x * x * x * x * y * y; }),
                (2.0 / 7.0) * (2.0 / 3.0), 1e-14);
    EXPECT_TRUE(DefaultGauss(0, 4).points.empty());
}

TEST(GaussLegendre, ThreePointsMatchTheTabledRuleWithAnExactZeroRoot) {
    std::vector<double> r, w;
    GaussLegendre(3, r, w);
    ASSERT_EQ(r.size(), 3u);
    EXPECT_NEAR(r[0], std::sqrt(0.6), 1e-15);
    EXPECT_EQ(r[1], 0.0);
    EXPECT_EQ(r[2], -r[0]);
    EXPECT_NEAR(w[0], 5.0 / 9.0, 1e-14);
    EXPECT_NEAR(w[1], 8.0 / 9.0, 1e-14);

    GaussLegendre(1, r, w);
    EXPECT_EQ(r, std::vector<double>{0.0});
    EXPECT_EQ(w, std::vector<double>{2.0});

    GaussLegendre(10, r, w);
    double moment = 0.0;
    for (size_t i = 0; i < r.size(); ++i) moment += w[i] * std::pow(r[i], 18);
    EXPECT_NEAR(moment, 2.0 / 19.0, 1e-13);
    EXPECT_GT(r[0], r[1]);  // descending
}

TEST(TriangleRule, SevenPointRuleIsExactForCubicsOnTheUnitTriangle) {
    const DefaultGauss seven(7, 6);
    ASSERT_EQ(seven.count, 7);
    ASSERT_EQ(seven.points.size(), 7u);
    EXPECT_DOUBLE_EQ(WeightSum(seven), 0.5);
    EXPECT_EQ(seven.points[3].x, 1.0);
    EXPECT_EQ(seven.points[6].weight, 0.225);
    EXPECT_NEAR(Integrate(seven, [](double x, double y) { return x * x * y; }), 1.0 / 60.0, 1e-15);
}

TEST(TriangleRule, WeightSumsDifferBetweenTheSmallAndLargeRules) {
    EXPECT_DOUBLE_EQ(WeightSum(DefaultGauss(1, 6)), 1.0);
    EXPECT_DOUBLE_EQ(WeightSum(DefaultGauss(2, 6)), 1.0);
    EXPECT_DOUBLE_EQ(WeightSum(DefaultGauss(3, 6)), 0.5);
    const DefaultGauss thirteen(13, 6);
    ASSERT_EQ(thirteen.points.size(), 13u);
    EXPECT_NEAR(WeightSum(thirteen), 0.5, 1e-10);  // the tabled constants carry 13 digits
    EXPECT_NEAR(Integrate(thirteen, [](double x, double y) { return x * x * y * y; }), 1.0 / 180.0,
                1e-10);
    EXPECT_TRUE(DefaultGauss(5, 6).points.empty());
    const DefaultGauss none(2, 5);  // no element of five nodes
    EXPECT_TRUE(none.points.empty());
    EXPECT_EQ(none.count, 0);
}

}  // namespace
