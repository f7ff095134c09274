// The stress and strain records of every step, appended to the step files from the numbered
// group files, a batch of files in memory at a time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/analysis_data.hpp"
#include "results/record_lines.hpp"

// Memory bound of one batch: a batch ends with the file that takes its size above it.
inline constexpr uint64_t kBatchSizeLimit = 400000000;

// How many consecutive group files form each batch, by the sizes of the "work_stress" files of
// groups 0 .. groupCount - 1 (the strain files have the same sizes). A file that cannot be
// opened or measured ends the run with an "Error : " line on standard error and status 1.
std::vector<int> BatchFileCounts(int groupCount, uint64_t sizeLimit = kBatchSizeLimit);

// One pass over all batches and steps: the stress (or strain) lines of every step, with the
// progress "\r時刻歴ファイル出力中(Stress " batch "/" batches ") " step "step" on every tenth
// step. A group file that cannot be read ends the run through StopOnUnopenedFile
// on standard output and status 1.
void AppendRecordPass(RecordKind kind, const CAnalysisData& analysis, const std::string& folder,
                      int64_t stepCount, const std::vector<uint32_t>& groupSizes,
                      const std::vector<int>& batchFileCounts);
