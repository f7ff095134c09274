#include "results/step_records.hpp"

#include <chrono>
#include <thread>

#include "results/model_head.hpp"
#include "results/record_lines.hpp"
#include "results/text_buffer.hpp"

std::string StepFileName(const std::string& folder, int64_t step) {
    return folder + "output" + std::to_string(step) + ".inp";
}

std::FILE* OpenStepFile(const std::string& path, const char* mode) {
    for (;;) {
        if (std::FILE* file = std::fopen(path.c_str(), mode)) return file;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

namespace {

void AppendRecords(RecordKind kind, const std::string& folder, int64_t step,
                   const CAnalysisData& analysis, const std::vector<std::vector<float>>& buffers,
                   const std::vector<uint32_t>& groupSizes, int groupCount, int64_t firstElement,
                   bool closing) {
    std::FILE* file = OpenStepFile(StepFileName(folder, step), "ab");
    {
        TextBuffer out(file);
        if (firstElement == 0) out.Text(RecordBanner(kind));
        const PointCountRule rule = kind == RecordKind::kStress ? PointCountRule::kRunningIndex
                                                                : PointCountRule::kIndexInGroup;
        const GroupedRecords records{buffers,
                                     groupSizes,
                                     static_cast<size_t>(std::max(groupCount, 0)),
                                     firstElement,
                                     static_cast<uint64_t>(WaveStepCount(analysis)),
                                     static_cast<uint64_t>(step)};
        AppendGroupedRecords(out, kind, rule, analysis, records);
        if (closing) AppendClosingBlocks(out);
    }
    std::fclose(file);
}

}  // namespace

void AppendStressRecords(const std::string& folder, int64_t step, const CAnalysisData& analysis,
                         const std::vector<std::vector<float>>& buffers,
                         const std::vector<uint32_t>& groupSizes, int groupCount,
                         int64_t firstElement) {
    AppendRecords(RecordKind::kStress, folder, step, analysis, buffers, groupSizes, groupCount,
                  firstElement, false);
}

void AppendStrainRecords(const std::string& folder, int64_t step, const CAnalysisData& analysis,
                         const std::vector<std::vector<float>>& buffers,
                         const std::vector<uint32_t>& groupSizes, int groupCount,
                         int64_t firstElement, bool lastBatch) {
    AppendRecords(RecordKind::kStrain, folder, step, analysis, buffers, groupSizes, groupCount,
                  firstElement, lastBatch);
}
