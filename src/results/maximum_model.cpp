#include "results/maximum_model.hpp"

#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "response/work_files.hpp"
#include "results/model_head.hpp"
#include "results/record_lines.hpp"
#include "results/text_buffer.hpp"
#include "results/work_file_reader.hpp"

namespace {

void AppendHeadWithMaxima(TextBuffer& out, const CAnalysisData& analysis) {
    const ModelFileHead head(analysis);
    head.AppendBlocks(out, WaveStepCount(analysis));
    head.AppendNodes(
        out,
        NodeMotionTable(work_files::kMaxDisp, work_files::kMaxAcc, analysis.nodes.size(), 1, 0, 1),
        0);
}

// All group files of one kind; a file that cannot be opened ends the run, after the text so
// far has reached the file.
std::vector<std::vector<float>> LoadGroupMaxima(RecordKind kind, int groupCount, TextBuffer& out) {
    std::vector<std::vector<float>> buffers;
    for (int k = 0; k < groupCount; ++k) {
        const std::string name =
            kind == RecordKind::kStress ? work_files::MaxStress(k) : work_files::MaxStrain(k);
        std::optional<std::vector<float>> words = LoadFloatWords(name);
        if (!words) {
            out.Flush();
            StopOnUnopenedFile(name);
        }
        buffers.push_back(std::move(*words));
    }
    return buffers;
}

}  // namespace

void WriteMaximumModelSingle(const CAnalysisData& analysis, OutputFile& file) {
    TextBuffer out(&file);
    AppendHeadWithMaxima(out, analysis);
    const std::vector<float> stress = LoadFloatWordsOrStop(work_files::kMaxStress);
    const std::vector<float> strain = LoadFloatWordsOrStop(work_files::kMaxStrain);
    AppendModelRecords(out, analysis, stress, strain, 0);
}

void WriteMaximumModelGrouped(const CAnalysisData& analysis, int groupCount,
                              const std::vector<uint32_t>& groupSizes, OutputFile& file) {
    TextBuffer out(&file);
    AppendHeadWithMaxima(out, analysis);
    for (RecordKind kind : {RecordKind::kStress, RecordKind::kStrain}) {
        out.Text(RecordBanner(kind));
        const std::vector<std::vector<float>> buffers = LoadGroupMaxima(kind, groupCount, out);
        const GroupedRecords records{buffers, groupSizes, buffers.size(), 0, 1, 0};
        TextBuffer* const outs[] = {&out};
        AppendGroupedRecords(outs, kind, PointCountRule::kIndexInGroup, analysis, records);
    }
    AppendClosingBlocks(out);
}
