// What the static analysis needs of a model beyond what the readers check, and the static form
// of its supports and materials.
#pragma once

#include <vector>

#include "model/analysis_data.hpp"

// Stops the run (status 2) with one message naming the fault: a material that an element uses
// with a non-positive density (the one the element selects), a non-positive initial shear
// modulus G0 or a Poisson's ratio outside (-1, 0.5), named by its number from 1; an element
// whose Jacobian is not positive at one of its integration points (folded, or nodes in the
// wrong order), named by its number from 1.
void CheckStaticModel(const CAnalysisData& analysis);

// Marks the supports of the static analysis in dofFixed and numbers the equations: the fixed
// directions of the boundary file (with its rules for unknown codes), and the direction of
// every dashpot that the dynamic analysis puts on a node (codes 100 to 199, and from 200 when
// the sides are viscous), which the static analysis holds fixed instead. Stops the run
// (status 2) when no node of the mesh is held in x, or none in y.
void MarkStaticSupports(CAnalysisData& analysis);

// Copies of the elements bound to elastic copies of their materials at the initial shear
// modulus G0 and no damping: the constitutive matrix of the static analysis, real in value.
std::vector<CElement> StaticElements(const CAnalysisData& analysis);
