// Appending the stress and strain records of a batch of element groups to a step's model file,
// and the naming of step files. Step files are opened as every output file is (OutputFile): a
// file that does not open within a short retry, or a failed write, ends the run.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/analysis_data.hpp"
#include "results/record_lines.hpp"

// folder + "output" + step + ".inp".
std::string StepFileName(const std::string& folder, int64_t step);

// Appends the stress (or strain) lines of steps firstStep .. firstStep + stepCount - 1 for the
// elements of a batch, each step's to its own file, all files open at once: the records of
// consecutive steps lie side by side in the buffers. Closing blocks follow when asked for.
// The single-step operations below are this with one step.
void AppendStepRangeRecords(RecordKind kind, const std::string& folder, int64_t firstStep,
                            int64_t stepCount, const CAnalysisData& analysis,
                            const std::vector<std::vector<float>>& buffers,
                            const std::vector<uint32_t>& groupSizes, int groupCount,
                            int64_t firstElement, bool closing);

// Appends the stress lines of one step for the elements of a batch: buffers[v] holds the
// records of group v (groupSizes[v] elements, all steps), firstElement is the global index of
// the batch's first element. The banner comes with the batch whose firstElement is 0. The
// number of lines of an element is the point count of its running index in the batch.
void AppendStressRecords(const std::string& folder, int64_t step, const CAnalysisData& analysis,
                         const std::vector<std::vector<float>>& buffers,
                         const std::vector<uint32_t>& groupSizes, int groupCount,
                         int64_t firstElement);

// The same for the strain lines; the number of lines of an element is the point count of its
// index within its group. After the last batch the closing blocks follow.
void AppendStrainRecords(const std::string& folder, int64_t step, const CAnalysisData& analysis,
                         const std::vector<std::vector<float>>& buffers,
                         const std::vector<uint32_t>& groupSizes, int groupCount,
                         int64_t firstElement, bool lastBatch);
