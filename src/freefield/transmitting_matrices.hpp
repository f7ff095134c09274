// The energy-transmitting boundary: at every frequency line, the dynamic stiffness of the
// layered soil beyond each edge, as the matrix that the dynamic analysis adds at the edge nodes.
#pragma once

#include <string>

#include "freefield/column_analysis.hpp"
#include "model/analysis_data.hpp"

// Writes "REMat<i>.dat" and "LEMat<i>.dat" for every line i from 1 to frequencyCount-1 into
// folder; returns the number of files.
int WriteLineMatrixFiles(const std::string& folder, const CAnalysisData& section,
                         const SideAnalysis& right, const SideAnalysis& left);
