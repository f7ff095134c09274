// The equivalent-linear iteration: solve all lines with the current moduli, reduce each
// strain-dependent element's strain histories to one effective strain, read the new modulus and
// damping from its curves, and repeat until the moduli have settled or the limit is reached.
#pragma once

#include <vector>

#include "model/analysis_data.hpp"
#include "solve/frequency_loop.hpp"
#include "solve/work_share.hpp"

// Mean over the element's integration points of the largest shear strain over time,
// sqrt((ex - ey)^2 + gxy^2), from the current node spectra.
double MeanPeakShearStrain(const CElement& element, const CAnalysisData& analysis);

// The peak-strain means of the elements of the share whose material is not elastic (0 for
// elastic ones and for those of other shares), computed in parallel over elements.
std::vector<double> PeakShearStrains(const CAnalysisData& analysis, const WorkShare& share = {});

// Runs the iteration; the node spectra hold the last solution at the end. In a job every rank
// runs it with the loop's share: each solves its lines, the lines then reach every rank (rank 0
// alone when no strain is taken), each takes the strain histories of its elements, and the peaks
// are summed over the ranks, so that every rank reads the same new moduli from the curves.
void RunEquivalentLinearIteration(CAnalysisData& analysis, bool equivalentLinear,
                                  FrequencyLoop& loop);
