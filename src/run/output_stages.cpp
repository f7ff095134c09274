// The stages after the equivalent-linear iteration: motion synthesis, stress and strain
// synthesis, the result model files, the text time histories and the removal of the work files.
// Two output paths: one model file of the first step only (single-step output), or one model
// file per time step, whose stress and strain blocks are appended batch by batch from the
// numbered files of the element groups.
#include "run/output_stages.hpp"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

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
    std::cout << "変位計算中" << std::flush;
    CalcDisplacementHistory(analysis);
    std::cout << "\r変位計算終了" << std::endl;
    std::cout << "応答加速度計算中" << std::flush;
    CalcAccelerationHistory(analysis);
    std::cout << "\r応答加速度終了" << std::endl;
}

// Opens "output_max.inp", lets writer fill it, closes it.
template <typename Writer>
void WriteMaximumFile(const std::string& outputFolder, const Writer& writer) {
    std::cout << "最大値分布出力中" << std::flush;
    const std::string name = outputFolder + "output_max.inp";
    std::FILE* file = std::fopen(name.c_str(), "w");
    if (file == nullptr) StopOnUnopenedFile(name);
    writer(file);
    std::fclose(file);
    std::cout << "\r最大値分布出力終了" << std::endl;
}

void RemoveFiles(const std::vector<std::string>& names) {
    for (const std::string& name : names) RemoveFile(name);
}

void RunSingleStepOutput(CAnalysisData& analysis, const std::string& dynFolder,
                         const std::string& outputFolder) {
    std::cout << "応力ひずみ計算中" << std::flush;
    CalcStressStrainSerial(analysis);
    std::cout << "\r応力ひずみ計算終了" << std::endl;

    WriteFullStepFiles(analysis, outputFolder, 1);
    std::cout << "\r時刻歴ファイル出力終了\t\t\t\t\t\t" << std::endl;

    WriteMaximumFile(outputFolder,
                     [&](std::FILE* file) { WriteMaximumModelSingle(analysis, file); });
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
    std::cout << "\r時刻歴ファイル出力終了(Disp and Acc)\t\t\t" << std::endl;
    RestoreProcessPriority();

    std::cout << "応力ひずみ計算中" << std::flush;
    // One group per worker thread; a machine of one processor still gets one group. In a job the
    // launcher may have bound rank 0 to a few processors: the groups, which shape the result
    // files, follow the processors of the launcher, as in a run started without it.
    const int processors = ranks::InJob() ? LauncherProcessorCount() : ProcessorCount();
    const int groupCount = std::max(1, processors - 1);
    const std::vector<uint32_t> groupSizes = GroupSizes(analysis.elements.size(), groupCount);
    RunStressStrainGroups(analysis, groupCount, groupSizes);
    std::cout << "\r応力ひずみ計算終了" << std::endl;

    // The spectra are the largest other consumer of memory; the batches need it now.
    ReleaseNodeSpectra(analysis);

    RaiseProcessPriority();
    const std::vector<int> batchFileCounts = BatchFileCounts(groupCount);
    for (RecordKind kind : {RecordKind::kStress, RecordKind::kStrain})
        AppendRecordPass(kind, analysis, outputFolder, stepCount, groupSizes, batchFileCounts);
    RestoreProcessPriority();
    std::cout << "\r時刻歴ファイル出力終了(Stress and Strain)\t\t\t" << std::endl;

    WriteMaximumFile(outputFolder, [&](std::FILE* file) {
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
