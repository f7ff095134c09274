// Free-field motion of the side columns, per frequency line, read from the free-field analysis.
#pragma once

#include <string>
#include <vector>

#include "linalg/small_matrix.hpp"
#include "model/analysis_data.hpp"

// Fills freeFieldMotion (frequencyCount vectors over the equations; sized so when it is not)
// from "RFF_%d.dat", then "LFF_%d.dat" in folder, the number running over the node count.
// Absent files are normal. Each file names its node on the first line and gives one complex
// value per frequency line after it, for the node's x equation; values are stored, so that a
// left file overwrites a right one where it has lines. A node index outside the node list ends
// the run as bad input.
void ReadFreeFieldFiles(std::vector<ComplexVector>& freeFieldMotion, const std::string& folder,
                        const CAnalysisData& analysis);
