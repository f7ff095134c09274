#include "element/gauss_rule.hpp"

#include <cmath>
#include <cstdio>
#include <numbers>

#include "base/platform.hpp"
#include "base/run_stop.hpp"

namespace {

struct TablePoint {
    double x, y, weight;
};

void Append(std::vector<CGauss>& points, std::initializer_list<TablePoint> table) {
    for (const TablePoint& p : table) points.emplace_back(p.x, p.y, p.weight);
}

// Quadrilateral rule of the given order on [-1, 1]^2. Orders 2 and 3 come from fixed tables
// (y in the outer position); other orders are the tensor product of the Gauss-Legendre rule
// with the x index in the outer loop.
void AppendQuadrilateralRule(std::vector<CGauss>& points, int order) {
    if (order == 2) {
        const double a = 1.0 / std::sqrt(3.0);
        Append(points, {{-a, -a, 1.0}, {a, -a, 1.0}, {-a, a, 1.0}, {a, a, 1.0}});
        return;
    }
    if (order == 3) {
        const double a = std::sqrt(0.6);
        const double corner = 0.30864197530864196;  // 25/81
        const double side = 0.4938271604938272;     // 40/81
        const double centre = 0.7901234567901234;   // 64/81
        Append(points, {{-a, -a, corner},
                        {a, -a, corner},
                        {-a, a, corner},
                        {a, a, corner},
                        {0.0, -a, side},
                        {-a, 0.0, side},
                        {a, 0.0, side},
                        {0.0, a, side},
                        {0.0, 0.0, centre}});
        return;
    }
    std::vector<double> r, w;
    GaussLegendre(order, r, w);
    for (size_t i = 0; i < r.size(); ++i)
        for (size_t j = 0; j < r.size(); ++j) points.emplace_back(r[i], r[j], w[i] * w[j]);
}

// Triangle rules in area coordinates; an unknown point count gives no points.
void AppendTriangleRule(std::vector<CGauss>& points, int pointCount) {
    const double third = 1.0 / 3.0;
    if (pointCount == 1) {
        Append(points, {{third, third, 1.0}});
    } else if (pointCount == 2) {
        Append(points, {{0.5, 0.5, third}, {0.5, 0.0, third}, {0.0, 0.5, third}});
    } else if (pointCount == 3) {
        const double w = 0.26041666666666669;  // 25/96
        Append(points, {{third, third, -0.28125}, {0.6, 0.2, w}, {0.2, 0.6, w}, {0.2, 0.2, w}});
    } else if (pointCount == 7) {
        const double side = 0.066666666666666666;  // 1/15
        Append(points, {{0.5, 0.5, side},
                        {0.0, 0.5, side},
                        {0.5, 0.0, side},
                        {1.0, 0.0, 0.025},
                        {0.0, 1.0, 0.025},
                        {0.0, 0.0, 0.025},
                        {third, third, 0.225}});
    } else if (pointCount == 13) {
        const double a = 0.0651301029002, b = 0.8697397941956;
        const double c = 0.3128654960049, d = 0.0486903154253, e = 0.6384441885698;
        const double f = 0.260345966079, g = 0.4793080678419;
        const double wa = 0.0266736178004, wc = 0.03855688044515, wf = 0.0878076287166;
        Append(points, {{a, a, wa},
                        {b, a, wa},
                        {a, b, wa},
                        {c, d, wc},
                        {e, c, wc},
                        {d, e, wc},
                        {e, d, wc},
                        {c, e, wc},
                        {d, c, wc},
                        {f, f, wf},
                        {g, f, wf},
                        {f, g, wf},
                        {0.333333333333, 0.333333333333, -0.0747850222335}});
    }
}

// A root of P_n in [lo, hi] by bisection; the process ends when it does not settle.
double BisectLegendreRoot(int n, double lo, double hi) {
    const double tolerance = 1e-15;
    for (int pass = 0; pass < 10000; ++pass) {
        const double mid = (lo + hi) / 2.0;
        const double atMid = LegendreP(n, mid);
        if (std::fabs(atMid) < tolerance || std::fabs(lo - hi) < tolerance) return mid;
        if (atMid * LegendreP(n, lo) < 0.0)
            hi = mid;
        else
            lo = mid;
    }
    StopRun(ExitStatus::kRuleFailure, {"error!!\n"});
}

}  // namespace

DefaultGauss::DefaultGauss(int ruleArgument, int nodeCount) {
    if (nodeCount == 4 || nodeCount == 8) {
        AppendQuadrilateralRule(points, ruleArgument);
        count = ruleArgument * ruleArgument;
    } else if (nodeCount == 6) {
        AppendTriangleRule(points, ruleArgument);
        count = ruleArgument;
    }
}

void GaussLegendre(int n, std::vector<double>& r, std::vector<double>& w) {
    const size_t size = n > 0 ? static_cast<size_t>(n) : 0;
    r.assign(size, 0.0);
    w.assign(size, 0.0);
    const int m = n / 2;
    for (int i = 0; i < m; ++i) {
        const int k = 2 * (i + 1);
        const double lo = std::sin((n - k) * std::numbers::pi / (2 * n));
        const double hi = std::sin((n + 2 - k) * std::numbers::pi / (2 * n));
        const double root = BisectLegendreRoot(n, lo, hi);
        r[i] = root;
        r[n - 1 - i] = -root;
    }
    // Weight from the orthonormal expansion: 1 / sum_k P_k(x)^2 / (2 / (2k + 1)).
    for (size_t j = 0; j < size; ++j) {
        double sum = 0.0;
        for (int k = 0; k < n; ++k) {
            const double p = LegendreP(k, r[j]);
            sum += std::pow(p, 2) / (2.0 / (2 * k + 1));
        }
        w[j] = 1.0 / sum;
    }
}

double LegendreP(int n, double x) {
    if (n <= 0) return 1.0;
    double previous = 1.0;
    double current = x;
    for (int k = 1; k < n; ++k) {
        const double next = ((2 * k + 1) * x * current - k * previous) / (k + 1);
        previous = current;
        current = next;
    }
    return current;
}
