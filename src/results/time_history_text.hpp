// The time histories a user reads per point, as text files in the dyn folder:
// "acc<n>.dat" per node (time, x and y acceleration in m/s2; x absolute, y relative) and
// "femsig<n>.dat" per element (time, element stress x, y, xy in kPa, sign reversed so that
// compression is positive), numbered from 1.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/analysis_data.hpp"

// Both kinds of files after the single-step output, the element stress from
// "work_AveStress.dat". Without a wave nothing is written.
void WriteTimeHistoriesSingle(const std::string& dynFolder, const CAnalysisData& analysis);

// Both kinds of files after the per-step output, the element stress from the numbered files of
// the element groups. A group file that cannot be opened ends the run through
// StopOnUnopenedFile, before any element file is written.
void WriteTimeHistoriesGrouped(const std::string& dynFolder, const CAnalysisData& analysis,
                               int groupCount, std::vector<uint32_t> groupSizes);

// "acc<n>.dat" of every node, in parallel, from "work_acc.dat".
void WriteAccFiles(double timeStep, const std::string& dynFolder, const CAnalysisData& analysis);

// "femsig<n>.dat" of every element, in parallel, from "work_AveStress.dat".
void WriteElementStressFiles(double timeStep, const std::string& dynFolder,
                             const CAnalysisData& analysis);
