// Free-field motion of the side columns, per frequency line, read from the free-field analysis.
#pragma once

#include <string>
#include <vector>

#include "element/small_matrix.hpp"
#include "run/analysis_data.hpp"

// Fills freeFieldMotion (frequencyCount vectors over the equations) from "RFF_%d.dat", then
// "LFF_%d.dat" in folder; absent files are normal.
void ReadFreeFieldFiles(std::vector<ComplexVector>& freeFieldMotion, const std::string& folder,
                        const CAnalysisData& analysis);
