// The equivalent-linear iteration: solve all lines with the current moduli, reduce each
// strain-dependent element's strain histories to one effective strain, read the new modulus and
// damping from its curves, and repeat until the moduli have settled or the limit is reached.
#pragma once

#include <vector>

#include "model/analysis_data.hpp"
#include "solve/frequency_loop.hpp"

// Mean over the element's integration points of the largest shear strain over time,
// sqrt((ex - ey)^2 + gxy^2), from the current node spectra.
double MeanPeakShearStrain(const CElement& element, const CAnalysisData& analysis);

// The peak-strain means of the elements whose material is not elastic (0 for elastic ones),
// computed in parallel over elements.
std::vector<double> PeakShearStrains(const CAnalysisData& analysis);

// Runs the iteration; the node spectra hold the last solution at the end.
void RunEquivalentLinearIteration(CAnalysisData& analysis, bool equivalentLinear,
                                  FrequencyLoop& loop);
