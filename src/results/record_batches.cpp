#include "results/record_batches.hpp"

#include <algorithm>
#include <cstdio>

#include "base/console.hpp"
#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "response/work_files.hpp"
#include "results/ordered_progress.hpp"
#include "results/step_records.hpp"
#include "results/work_file_reader.hpp"

namespace {

// Step files written together by one worker: few enough to stay open at once.
constexpr int64_t kStepsPerRun = 16;

[[noreturn]] void FailMeasuring(const std::string& name, const char* fault) {
    StopOnOutputFault("Error : " + name + fault);
}

uint64_t MeasureGroupFile(const std::string& name) {
    std::FILE* file = std::fopen(name.c_str(), "rb");
    if (file == nullptr) FailMeasuring(name, "を開くことできませんでした。");
    std::fclose(file);
    const std::optional<uint64_t> size = FileSize(name);
    if (!size) FailMeasuring(name, "のファイルサイズを取得できません。");
    return *size;
}

}  // namespace

std::vector<int> BatchFileCounts(int groupCount, uint64_t sizeLimit) {
    std::vector<int> counts;
    uint64_t runningSize = 0;
    int runningCount = 0;
    for (int k = 0; k < groupCount; ++k) {
        runningSize += MeasureGroupFile(work_files::Stress(k));
        ++runningCount;
        if (runningSize > sizeLimit) {
            counts.push_back(runningCount);
            runningSize = 0;
            runningCount = 0;
        }
    }
    if (runningCount != 0) counts.push_back(runningCount);
    return counts;
}

void AppendRecordPass(RecordKind kind, const CAnalysisData& analysis, const std::string& folder,
                      int64_t stepCount, const std::vector<uint32_t>& groupSizes,
                      const std::vector<int>& batchFileCounts) {
    const bool stress = kind == RecordKind::kStress;
    const int64_t batches = static_cast<int64_t>(batchFileCounts.size());
    const int64_t firstGroupSize = groupSizes.empty() ? 0 : groupSizes[0];
    int fileIndex = 0;
    for (int64_t b = 0; b < batches; ++b) {
        std::vector<std::vector<float>> stepBuffers;
        std::vector<uint32_t> batchSizes;
        for (int i = 0; i < batchFileCounts[b]; ++i, ++fileIndex) {
            const std::string name =
                stress ? work_files::Stress(fileIndex) : work_files::Strain(fileIndex);
            std::optional<std::vector<float>> words = LoadFloatWords(name);
            if (!words) StopOnUnopenedFile(name);
            stepBuffers.push_back(std::move(*words));
            batchSizes.push_back(
                static_cast<size_t>(fileIndex) < groupSizes.size() ? groupSizes[fileIndex] : 0);
        }
        // The batch's first element as the result files have always counted it: exact when the
        // earlier batches held as many files as the one before this.
        const int64_t firstElement = b == 0 ? 0 : batchFileCounts[b - 1] * b * firstGroupSize;
        const int groupCount = batchFileCounts[b];
        const bool lastBatch = b == batches - 1;
        // A work item is a run of consecutive steps, whose records lie side by side.
        const int64_t runs = (stepCount + kStepsPerRun - 1) / kStepsPerRun;
        ForEachWithProgress(
            runs, SliceForWorkers(1, 1),
            [&](int64_t run) {
                for (int64_t s = run * kStepsPerRun;
                     s < std::min(stepCount, (run + 1) * kStepsPerRun); ++s) {
                    if (s % 10 != 0) continue;
                    console::Out(std::string(stress ? "\r時刻歴ファイル出力中(Stress "
                                                    : "\r時刻歴ファイル出力中(Strain ") +
                                 std::to_string(b + 1) + "/" + std::to_string(batches) + ") " +
                                 std::to_string(s) + "step");
                }
            },
            [&](int64_t run) {
                const int64_t first = run * kStepsPerRun;
                AppendStepRangeRecords(
                    kind, folder, first, std::min(kStepsPerRun, stepCount - first), analysis,
                    stepBuffers, batchSizes, groupCount, firstElement, !stress && lastBatch);
            });
    }
}
