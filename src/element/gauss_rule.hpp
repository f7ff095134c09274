// Integration rules of the elements.
#pragma once

#include <vector>

#include "element/point.hpp"

class DefaultGauss {
  public:
    int count = 0;
    std::vector<CGauss> points;

    // nodeCount 4 or 8: quadrilateral rule of order ruleArgument (ruleArgument^2 points);
    // nodeCount 6: triangle rule of ruleArgument points; anything else: no rule.
    DefaultGauss(int ruleArgument, int nodeCount);
};

// Roots r (descending) and weights w of the n-point Gauss-Legendre rule on [-1, 1].
// Ends the process with status 1 ("error!!") when a bisection does not converge.
void GaussLegendre(int n, std::vector<double>& r, std::vector<double>& w);

// Legendre polynomial P_n(x) by the three-term recurrence.
double LegendreP(int n, double x);
