// "output_max.inp": a result model file of the largest absolute values over the record, at each
// node and integration point. The steps line shows the step count twice.
#pragma once

#include <cstdint>
#include <vector>

#include "base/output_file.hpp"
#include "model/analysis_data.hpp"

// From the single set of maximum records ("work_Mstress.dat", "work_Mstrain.dat").
void WriteMaximumModelSingle(const CAnalysisData& analysis, OutputFile& file);

// From the numbered maximum records of the element groups. A group file that cannot be opened
// ends the run through StopOnUnopenedFile on standard output and status 1; what
// was written before it stays in the file.
void WriteMaximumModelGrouped(const CAnalysisData& analysis, int groupCount,
                              const std::vector<uint32_t>& groupSizes, OutputFile& file);
