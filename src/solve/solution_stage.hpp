// The solution: the constant matrices of the frequency loop, then the equivalent-linear
// iteration around it. Leaves the transfer functions in the node spectra.
#pragma once

#include <string>

#include "model/analysis_data.hpp"

// equivalentLinear: iterate the moduli against the strains; else one linear pass.
void RunSolution(CAnalysisData& analysis, bool equivalentLinear,
                 const std::string& freeFieldFolder);
