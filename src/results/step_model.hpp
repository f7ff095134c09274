// The result model file of one time step ("output" + step + ".inp"), and the writing of all step
// files of a run in parallel.
#pragma once

#include <cstdint>
#include <string>

#include "base/output_file.hpp"
#include "model/analysis_data.hpp"

// The whole file of one step, from the node work files and the single set of stress and strain
// records (single-step output).
void WriteStepModelFull(const CAnalysisData& analysis, int64_t step, OutputFile& file);

// The file of one step up to and including the node block; the stress and strain blocks are
// appended later, batch by batch.
void WriteStepModelHead(const CAnalysisData& analysis, int64_t step, OutputFile& file);

// Every step file of the single-step output: WriteStepModelFull for steps 0 .. stepCount - 1,
// with the progress "\r時刻歴ファイル出力中\t" step "step".
void WriteFullStepFiles(const CAnalysisData& analysis, const std::string& folder,
                        int64_t stepCount);

// The head of every step file, in parallel, with the progress
// "\r時刻歴ファイル出力中(Disp and Acc)\t" step "step" on every tenth step. The node motion is
// read for a run of steps at a time, within a bounded amount of memory.
void WriteStepHeadFiles(const CAnalysisData& analysis, const std::string& folder,
                        int64_t stepCount);
