// An element of the mesh: its nodes, its own integration points, and the shared rule,
// material and shape function it is bound to on reading.
#pragma once

#include <boost/shared_ptr.hpp>
#include <vector>

#include "element/gauss_rule.hpp"
#include "element/material.hpp"
#include "element/shape_function.hpp"

class CElement {
  public:
    int gaussCount = 0;
    int ruleCount = 0;
    std::vector<int> nodes;
    std::vector<CGauss> gaussPoints;  // a private copy of the rule's points, with their stresses
    boost::shared_ptr<DefaultGauss> gaussRule;
    boost::shared_ptr<DAT_Material> material;
    boost::shared_ptr<DAT_ShapeFunction> shapeFunction;
    bool usesFirstDensity = false;

    double Density() const { return usesFirstDensity ? material->rho1 : material->rho2; }
};
