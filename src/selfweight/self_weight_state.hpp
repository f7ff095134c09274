// The state of a section under its own weight, as the self-weight analysis leaves it for the
// dynamic analysis: node displacements, and the stress and strain of every integration point.
#pragma once

#include <vector>

#include "response/gauss_step_response.hpp"

// Standard gravity (m/s2). Densities are in MPa s2/m2 (t/m3 divided by 1000), so that density
// times gravity is a unit weight in MPa/m (MN/m3) and the stresses come out in MPa.
inline constexpr double kStandardGravity = 9.80665;

// The balance of the section: its weight against the support reactions, forces in MN per metre
// of section (unit thickness).
struct StaticBalance {
    double weight = 0.0;           // g times the mass of the section
    double reactionX = 0.0;        // sum of the support reactions in x
    double reactionY = 0.0;        // sum of the support reactions in y, upward positive
    double largestResidual = 0.0;  // largest out-of-balance force at a free degree of freedom
};

struct SelfWeightState {
    std::vector<double> displacement;  // x, y of every node (m)
    // points[e][g]: integration point g of element e, in the order of the element's rule: stress
    // (MPa, compression negative) and strain, with their derived scalars.
    std::vector<std::vector<StepResponse>> points;
    StaticBalance balance;  // the gravity method only; the k0 method has no reactions
};
