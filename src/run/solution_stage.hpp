// The solution: the constant matrices of the frequency loop, then the equivalent-linear
// iteration around it. Leaves the transfer functions in the node spectra.
#pragma once

#include <string>

#include "run/analysis_data.hpp"
#include "run/run_control.hpp"

void RunSolution(CAnalysisData& analysis, const CRunControl& run,
                 const std::string& freeFieldFolder);
