#include "results/step_model.hpp"

#include <algorithm>

#include "base/console.hpp"
#include "response/work_files.hpp"
#include "results/model_head.hpp"
#include "results/ordered_progress.hpp"
#include "results/record_lines.hpp"
#include "results/step_records.hpp"
#include "results/text_buffer.hpp"
#include "results/work_file_reader.hpp"

namespace {

// Memory for the node motion of a run of steps while the heads are written.
constexpr uint64_t kNodeMotionBudget = 128u << 20;

void AppendHead(TextBuffer& out, const ModelFileHead& head, const NodeMotionTable& motion,
                int64_t step) {
    head.AppendBlocks(out, step);
    head.AppendNodes(out, motion, static_cast<uint64_t>(step));
}

NodeMotionTable StepMotion(const CAnalysisData& analysis, int64_t firstStep, int64_t stepCount) {
    return NodeMotionTable(work_files::kDisp, work_files::kAcc, analysis.nodes.size(),
                           static_cast<uint64_t>(WaveStepCount(analysis)),
                           static_cast<uint64_t>(firstStep), static_cast<uint64_t>(stepCount));
}

// Writes one step file through writer(out).
template <typename Writer>
void WriteStepFile(const std::string& folder, int64_t step, const Writer& writer) {
    OutputFile file(StepFileName(folder, step), "wb");
    {
        TextBuffer out(&file);
        writer(out);
    }
    file.Close();
}

}  // namespace

void WriteStepModelFull(const CAnalysisData& analysis, int64_t step, OutputFile& file) {
    TextBuffer out(&file);
    AppendHead(out, ModelFileHead(analysis), StepMotion(analysis, step, 1), step);
    const std::vector<float> stress = LoadFloatWordsOrStop(work_files::kStress);
    const std::vector<float> strain = LoadFloatWordsOrStop(work_files::kStrain);
    AppendModelRecords(out, analysis, stress, strain, static_cast<uint64_t>(step));
}

void WriteStepModelHead(const CAnalysisData& analysis, int64_t step, OutputFile& file) {
    TextBuffer out(&file);
    AppendHead(out, ModelFileHead(analysis), StepMotion(analysis, step, 1), step);
}

void WriteFullStepFiles(const CAnalysisData& analysis, const std::string& folder,
                        int64_t stepCount) {
    ForEachWithProgress(
        stepCount, SliceForWorkers(1, 1),
        [](int64_t step) {
            console::Out("\r時刻歴ファイル出力中\t" + std::to_string(step) + "step");
        },
        [&](int64_t step) {
            OutputFile file(StepFileName(folder, step), "wb");
            WriteStepModelFull(analysis, step, file);
            file.Close();
        });
}

void WriteStepHeadFiles(const CAnalysisData& analysis, const std::string& folder,
                        int64_t stepCount) {
    const ModelFileHead head(analysis);
    const int64_t run = static_cast<int64_t>(
        NodeMotionTable::StepsWithin(analysis.nodes.size(), kNodeMotionBudget));
    for (int64_t first = 0; first < stepCount; first += run) {
        const int64_t count = std::min(run, stepCount - first);
        const NodeMotionTable motion = StepMotion(analysis, first, count);
        ForEachWithProgress(
            count, SliceForWorkers(10, 10),
            [&](int64_t i) {
                if ((first + i) % 10 == 0)
                    console::Out("\r時刻歴ファイル出力中(Disp and Acc)\t" +
                                 std::to_string(first + i) + "step");
            },
            [&](int64_t i) {
                WriteStepFile(folder, first + i,
                              [&](TextBuffer& out) { AppendHead(out, head, motion, first + i); });
            });
    }
}
