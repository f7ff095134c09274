// The stages after the equivalent-linear iteration: motion synthesis, stress and strain
// synthesis, the result model files, the text time histories and the removal of the work files.
// Two output paths: one model file of the first step only (single-step output), or one model
// file per time step, whose stress and strain blocks are appended batch by batch from the
// numbered files of the element groups.
#include "run/output_stages.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "base/console.hpp"
#include "base/output_file.hpp"
#include "base/platform.hpp"
#include "base/ranks.hpp"
#include "base/run_stop.hpp"
#include "response/motion_synthesis.hpp"
#include "response/stress_strain_synthesis.hpp"
#include "response/work_files.hpp"
#include "results/maximum_model.hpp"
#include "results/model_head.hpp"
#include "results/record_batches.hpp"
#include "results/step_model.hpp"
#include "results/time_history_text.hpp"

namespace {

void SynthesiseMotion(CAnalysisData& analysis) {
    console::Out("変位計算中");
    console::Flush();
    CalcDisplacementHistory(analysis);
    console::OutLine("\r変位計算終了");
    console::Out("応答加速度計算中");
    console::Flush();
    CalcAccelerationHistory(analysis);
    console::OutLine("\r応答加速度終了");
}

// Opens "output_max.inp", lets writer fill it, closes it.
template <typename Writer>
void WriteMaximumFile(const std::string& outputFolder, const Writer& writer) {
    console::Out("最大値分布出力中");
    console::Flush();
    OutputFile file(outputFolder + "output_max.inp", "w");
    writer(file);
    file.Close();
    console::OutLine("\r最大値分布出力終了");
}

void RemoveFiles(const std::vector<std::string>& names) {
    for (const std::string& name : names) RemoveFile(name);
}

void RunSingleStepOutput(CAnalysisData& analysis, const std::string& dynFolder,
                         const std::string& outputFolder) {
    console::Out("応力ひずみ計算中");
    console::Flush();
    CalcStressStrainSerial(analysis);
    console::OutLine("\r応力ひずみ計算終了");

    WriteFullStepFiles(analysis, outputFolder, 1);
    console::OutLine("\r時刻歴ファイル出力終了\t\t\t\t\t\t");

    WriteMaximumFile(outputFolder,
                     [&](OutputFile& file) { WriteMaximumModelSingle(analysis, file); });
    WriteTimeHistoriesSingle(dynFolder, analysis);
    analysis.clear(1);

    using namespace work_files;
    RemoveFiles(
        {kAcc, kElementStress, kDisp, kMaxAcc, kMaxDisp, kMaxStrain, kMaxStress, kStrain, kStress});
}

// Element groups of the parallel stress synthesis: runs of consecutive elements, all of one
// size but the last, which takes the remainder too.
std::vector<uint32_t> GroupSizes(size_t elementCount, int groupCount) {
    const uint32_t quotient = static_cast<uint32_t>(elementCount / groupCount);
    const uint32_t remainder = static_cast<uint32_t>(elementCount % groupCount);
    std::vector<uint32_t> sizes(groupCount, quotient);
    sizes.back() += remainder;
    return sizes;
}

void ReleaseNodeSpectra(CAnalysisData& analysis) {
    for (CNode& node : analysis.nodes) {
        node.dispX = ComplexVector(1);
        node.dispY = ComplexVector(1);
    }
}

void RunPerStepOutput(CAnalysisData& analysis, const std::string& dynFolder,
                      const std::string& outputFolder) {
    const int64_t stepCount = WaveStepCount(analysis);

    RaiseProcessPriority();
    WriteStepHeadFiles(analysis, outputFolder, stepCount);
    console::OutLine("\r時刻歴ファイル出力終了(Disp and Acc)\t\t\t");
    RestoreProcessPriority();

    console::Out("応力ひずみ計算中");
    console::Flush();
    // One group per worker thread; a machine of one processor still gets one group. In a job the
    // launcher may have bound rank 0 to a few processors: the groups, which shape the result
    // files, follow the processors of the launcher, as in a run started without it.
    const int processors = ranks::InJob() ? LauncherProcessorCount() : ProcessorCount();
    const int groupCount = std::max(1, processors - 1);
    const std::vector<uint32_t> groupSizes = GroupSizes(analysis.elements.size(), groupCount);
    RunStressStrainGroups(analysis, groupCount, groupSizes);
    console::OutLine("\r応力ひずみ計算終了");

    // The spectra are the largest other consumer of memory; the batches need it now.
    ReleaseNodeSpectra(analysis);

    RaiseProcessPriority();
    const std::vector<int> batchFileCounts = BatchFileCounts(groupCount);
    for (RecordKind kind : {RecordKind::kStress, RecordKind::kStrain})
        AppendRecordPass(kind, analysis, outputFolder, stepCount, groupSizes, batchFileCounts);
    RestoreProcessPriority();
    console::OutLine("\r時刻歴ファイル出力終了(Stress and Strain)\t\t\t");

    WriteMaximumFile(outputFolder, [&](OutputFile& file) {
        WriteMaximumModelGrouped(analysis, groupCount, groupSizes, file);
    });
    WriteTimeHistoriesGrouped(dynFolder, analysis, groupCount, groupSizes);
    analysis.clear(1);

    using namespace work_files;
    RemoveFiles({kDisp, kMaxDisp, kAcc, kMaxAcc});
    for (int k = 0; k < groupCount; ++k)
        RemoveFiles({Strain(k), Stress(k), MaxStrain(k), MaxStress(k), ElementStress(k)});
}

}  // namespace

void RunOutputStages(CAnalysisData& analysis, const CRunControl& run, const std::string& dynFolder,
                     const std::string& outputFolder) {
    SynthesiseMotion(analysis);
    if (run.singleStepOutput)
        RunSingleStepOutput(analysis, dynFolder, outputFolder);
    else
        RunPerStepOutput(analysis, dynFolder, outputFolder);
}
