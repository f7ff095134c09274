// The response and output stages after the solution: syntheses, result model files, text
// time histories, removal of the work files.
#pragma once

#include <string>

#include "model/analysis_data.hpp"
#include "run/run_control.hpp"

void RunOutputStages(CAnalysisData& analysis, const CRunControl& run, const std::string& dynFolder,
                     const std::string& outputFolder);
