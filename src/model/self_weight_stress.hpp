// The shear strength of a GHE material point from its initial stress state.
#pragma once

#include "element/material.hpp"

// Strength tauf at a point of stresses sx, sy, sxy (MPa, tension positive): the Mohr-Coulomb
// strength on the mean stress of the principal stresses, with compression taken positive and a
// floor of 0.010132500000000001 on a tensile confining term.
double GheStrength(const DAT_GHEmodel& material, double sx, double sy, double sxy);
