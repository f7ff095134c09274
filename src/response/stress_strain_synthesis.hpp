// Strain and stress synthesis into the work files: one pass over all elements writing the single
// set, or element groups in parallel, each writing a numbered set of its own.
#pragma once

#include <cstdint>
#include <vector>

#include "run/analysis_data.hpp"

// Element group k: groupSizes[k] consecutive elements from element groupSizes[0] x k, written
// with every step to the numbered files of k. A group of no elements leaves its five files empty.
void CalcStressStrainGroup(const CAnalysisData& analysis, int k,
                           const std::vector<uint32_t>& groupSizes);
