// The gravity method of the self-weight analysis: a linear elastic plane-strain analysis of the
// whole section under its own weight.
#pragma once

#include "model/analysis_data.hpp"
#include "selfweight/self_weight_state.hpp"

// Smallest estimate of the reciprocal condition number of the static stiffness that is taken
// for a regular system. A section left free to turn about a single fixed node factors with
// pivots at rounding level and estimates of 4e-16 to 7e-15; regular sections stay near 1e-4
// even with a thousandfold stiffness contrast and a Poisson's ratio of 0.49. The limit lies
// between the two, some five orders from each.
inline constexpr double kSmallestReciprocalCondition = 1e-10;

// Marks the supports (MarkStaticSupports) and solves K u = f: K the static stiffness of the
// elements from G0 and Poisson's ratio, f the body force of each element's own density (the
// one its density selector picks, the same that gives the dynamic analysis its mass) times
// standard gravity, downward. Then the strain of every integration point from the element's
// strain matrix, the stress from the constitutive matrix, and the balance: the support
// reactions (internal nodal forces less the load at the fixed degrees of freedom) against the
// weight. Stops the run (status 2) on a singular system.
SelfWeightState GravityAnalysis(CAnalysisData& analysis);

// The nodal forces of the weight, x and y of every node (MN/m): -g times the integral of
// density times the node's shape function in y, zero in x.
std::vector<double> GravityLoad(const CAnalysisData& analysis);
