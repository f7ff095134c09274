// The self-weight result as the dynamic analysis reads it back: "output0.inp", a complete
// result model file of step 0 with the stress block holding one line per integration point.
#pragma once

#include <string>

#include "model/analysis_data.hpp"
#include "selfweight/self_weight_state.hpp"

// Writes the result model file of the state to path: the head of the model, the node lines
// with the displacements, the stress lines (tf/m2, compression negative) and strain lines of
// every integration point, element by element in the order of the element's rule, and the
// closing blocks. The text goes to path + ".partial" first and is renamed to path once it is
// complete, so that a run that stops leaves no half-written file; a file that cannot be
// written stops the run (status 1) and leaves no file behind.
void WriteInitialStressFile(const CAnalysisData& analysis, const SelfWeightState& state,
                            const std::string& path);
