// Strain and stress synthesis into the work files: one pass over all elements writing the single
// set, or element groups in parallel, each writing a numbered set of its own.
#pragma once

#include <cstdint>
#include <vector>

#include "model/analysis_data.hpp"

// Element group k: groupSizes[k] consecutive elements from element groupSizes[0] x k, written
// with every step to the numbered files of k. A group of no elements leaves its five files empty.
void CalcStressStrainGroup(const CAnalysisData& analysis, int k,
                           const std::vector<uint32_t>& groupSizes);

// Strain and stress of every element in one pass, with the records of step 0 only, into the
// single set of work files.
void CalcStressStrainSerial(const CAnalysisData& analysis);

// All element groups, in parallel over the groups (see CalcStressStrainGroup).
void RunStressStrainGroups(const CAnalysisData& analysis, int groupCount,
                           const std::vector<uint32_t>& groupSizes);
