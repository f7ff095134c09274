// The stress and strain blocks of a result model file: one line per element and integration
// point, from the six-value records of the work files, and the closing blocks.
//
// Stress line: element number, the six stress values in tf/m2 ("%.4lf"), then G/G0 of the
// element's material. Strain line: element number, the six strain values ("%.8lf").
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "model/analysis_data.hpp"
#include "response/gauss_step_response.hpp"
#include "response/work_files.hpp"
#include "results/text_buffer.hpp"

enum class RecordKind { kStress, kStrain };

// "---- stress ----\n" or "---- strain ----\n".
std::string_view RecordBanner(RecordKind kind);

// Total head, fext, deviatoric strain, pvsn & eq_epn: each a banner and the line "0".
void AppendClosingBlocks(TextBuffer& out);

// Integration points of an element, and G/G0 of its material; 0 for an index beyond the list.
int PointCountOf(const CAnalysisData& analysis, int64_t element);
double StiffnessRatioOf(const CAnalysisData& analysis, int64_t element);

// The lines of one element at consecutive steps, those of step firstStep + i going to outs[i]:
// lineCount points, the record of point g at index.Position(element, g, step) of data, printed
// with elementNumber.
struct ElementLines {
    int64_t elementNumber = 0;
    int lineCount = 0;
    double stiffnessRatio = 0.0;  // stress lines only
};
void AppendElementLines(std::span<TextBuffer* const> outs, RecordKind kind,
                        const std::vector<float>& data, const WorkRecordIndex& index,
                        uint64_t element, uint64_t firstStep, const ElementLines& lines);

// Both blocks over all elements in list order, from the single work-file set (S = 1), then the
// closing blocks.
void AppendModelRecords(TextBuffer& out, const CAnalysisData& analysis,
                        const std::vector<float>& stress, const std::vector<float>& strain,
                        uint64_t step);

// Both blocks over all elements in list order from responses held in memory (a static state
// computed in this process, not read back from work files), points[e] holding the points of
// element e; then the closing blocks. The values are formatted from double.
void AppendModelRecords(TextBuffer& out, const CAnalysisData& analysis,
                        const std::vector<std::vector<StepResponse>>& points);

// How the lines of one element in a run of element groups are counted: by the point count of
// the element's running index within the run, or of its index within its group (both counted
// from the first element of the model, as the result files have always been laid out).
enum class PointCountRule { kRunningIndex, kIndexInGroup };

// Records of consecutive element groups, each group's records in its own buffer.
struct GroupedRecords {
    const std::vector<std::vector<float>>& buffers;
    const std::vector<uint32_t>& groupSizes;
    size_t groupCount = 0;
    int64_t firstElement = 0;  // global index of the first element of group 0
    uint64_t stepStride = 1;   // S of the buffers
    uint64_t firstStep = 0;
};
// The lines of every element of the groups, numbered on from firstElement + 1, without banner,
// for consecutive steps from records.firstStep, one text per step.
void AppendGroupedRecords(std::span<TextBuffer* const> outs, RecordKind kind, PointCountRule rule,
                          const CAnalysisData& analysis, const GroupedRecords& records);
