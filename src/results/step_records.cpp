#include "results/step_records.hpp"

#include <memory>

#include "results/model_head.hpp"
#include "results/record_lines.hpp"
#include "results/text_buffer.hpp"

std::string StepFileName(const std::string& folder, int64_t step) {
    return folder + "output" + std::to_string(step) + ".inp";
}

void AppendStepRangeRecords(RecordKind kind, const std::string& folder, int64_t firstStep,
                            int64_t stepCount, const CAnalysisData& analysis,
                            const std::vector<std::vector<float>>& buffers,
                            const std::vector<uint32_t>& groupSizes, int groupCount,
                            int64_t firstElement, bool closing) {
    std::vector<std::unique_ptr<OutputFile>> files;
    std::vector<std::unique_ptr<TextBuffer>> texts;
    std::vector<TextBuffer*> outs;
    for (int64_t i = 0; i < stepCount; ++i) {
        files.push_back(std::make_unique<OutputFile>(StepFileName(folder, firstStep + i), "ab"));
        texts.push_back(std::make_unique<TextBuffer>(files.back().get(), size_t{256} << 10));
        outs.push_back(texts.back().get());
        if (firstElement == 0) outs.back()->Text(RecordBanner(kind));
    }
    const PointCountRule rule =
        kind == RecordKind::kStress ? PointCountRule::kRunningIndex : PointCountRule::kIndexInGroup;
    const GroupedRecords records{buffers,
                                 groupSizes,
                                 static_cast<size_t>(std::max(groupCount, 0)),
                                 firstElement,
                                 static_cast<uint64_t>(WaveStepCount(analysis)),
                                 static_cast<uint64_t>(firstStep)};
    AppendGroupedRecords(outs, kind, rule, analysis, records);
    for (TextBuffer* out : outs)
        if (closing) AppendClosingBlocks(*out);
    texts.clear();  // the last text reaches its file
    for (const std::unique_ptr<OutputFile>& file : files) file->Close();
}

void AppendStressRecords(const std::string& folder, int64_t step, const CAnalysisData& analysis,
                         const std::vector<std::vector<float>>& buffers,
                         const std::vector<uint32_t>& groupSizes, int groupCount,
                         int64_t firstElement) {
    AppendStepRangeRecords(RecordKind::kStress, folder, step, 1, analysis, buffers, groupSizes,
                           groupCount, firstElement, false);
}

void AppendStrainRecords(const std::string& folder, int64_t step, const CAnalysisData& analysis,
                         const std::vector<std::vector<float>>& buffers,
                         const std::vector<uint32_t>& groupSizes, int groupCount,
                         int64_t firstElement, bool lastBatch) {
    AppendStepRangeRecords(RecordKind::kStrain, folder, step, 1, analysis, buffers, groupSizes,
                           groupCount, firstElement, lastBatch);
}
