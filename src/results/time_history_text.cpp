#include "results/time_history_text.hpp"

#include <memory>

#include "base/console.hpp"
#include "base/output_file.hpp"
#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "response/work_files.hpp"
#include "results/model_head.hpp"
#include "results/ordered_progress.hpp"
#include "results/text_buffer.hpp"
#include "results/work_file_reader.hpp"

namespace {

constexpr const char* kAccDone = "\r節点加速度データファイル出力終了\t\t\t\t\t";
constexpr const char* kStressDone = "\r要素応力データファイル出力終了\t\t\t\t\t";

// Writes one text file: the heading, then line(out, t) for each step.
template <typename LineWriter>
void WriteTextFile(const std::string& path, const char* heading, int64_t stepCount,
                   const LineWriter& line) {
    OutputFile file(path, "w");
    {
        TextBuffer out(&file, size_t{64} << 10);
        out.Text(heading);
        for (int64_t t = 0; t < stepCount; ++t) line(out, t);
    }
    file.Close();
}

std::string NumberedName(const std::string& folder, const char* stem, int64_t index) {
    return folder + stem + std::to_string(index + 1) + ".dat";
}

// The element stress files of elements firstElement .. firstElement + count - 1, whose series
// (x, y, xy as f32, step by step) follow each other in the reader's file from its start.
void WriteStressFilesFrom(const WorkFileReader& reader, int64_t firstElement, int64_t count,
                          int64_t stepCount, double timeStep, const std::string& dynFolder) {
    ForEachWithProgress(
        count, SliceForWorkers(64, 64),
        [&](int64_t j) {
            console::Out("\r要素応力データファイル出力中\t" + std::to_string(firstElement + j) +
                         "要素");
        },
        [&](int64_t j) {
            const std::vector<float> values = reader.ReadArray<float>(
                static_cast<uint64_t>(j * stepCount) * 12, static_cast<size_t>(stepCount) * 3);
            WriteTextFile(NumberedName(dynFolder, "femsig", firstElement + j),
                          "time[s]\tsx[kPa]\tsy[kPa]\tsxy[kPa]\n", stepCount,
                          [&](TextBuffer& out, int64_t t) {
                              // The sign bit is turned over, not subtracted from zero: +0 shows
                              // as -0.000000.
                              out.Fixed(static_cast<double>(t) * timeStep, 6);
                              for (int c = 0; c < 3; ++c)
                                  out.Char(' ').Fixed(static_cast<double>(-values[t * 3 + c]), 6);
                              out.Char('\n');
                          });
        });
}

}  // namespace

void WriteAccFiles(double timeStep, const std::string& dynFolder, const CAnalysisData& analysis) {
    const int64_t stepCount = WaveStepCount(analysis);
    const WorkFileReader reader(work_files::kAcc);
    RequireOpen(reader, work_files::kAcc);
    ForEachWithProgress(
        static_cast<int64_t>(analysis.nodes.size()), SliceForWorkers(64, 64),
        [](int64_t n) {
            console::Out("\r節点加速度データファイル出力中\t" + std::to_string(n) + "節点");
        },
        [&](int64_t n) {
            const std::vector<double> values = reader.ReadArray<double>(
                static_cast<uint64_t>(n * stepCount) * 16, static_cast<size_t>(stepCount) * 2);
            WriteTextFile(NumberedName(dynFolder, "acc", n), "time[s]\taccX[m/s2] accY[m/s2]\n",
                          stepCount, [&](TextBuffer& out, int64_t t) {
                              out.Fixed(static_cast<double>(t) * timeStep, 6).Char(' ');
                              out.Fixed(values[t * 2], 6).Char(' ');
                              out.Fixed(values[t * 2 + 1], 6).Char('\n');
                          });
        });
}

void WriteElementStressFiles(double timeStep, const std::string& dynFolder,
                             const CAnalysisData& analysis) {
    const WorkFileReader reader(work_files::kElementStress);
    RequireOpen(reader, work_files::kElementStress);
    WriteStressFilesFrom(reader, 0, static_cast<int64_t>(analysis.elements.size()),
                         WaveStepCount(analysis), timeStep, dynFolder);
}

void WriteTimeHistoriesSingle(const std::string& dynFolder, const CAnalysisData& analysis) {
    if (analysis.seismicWaves.empty()) return;
    const double timeStep = analysis.Wave().timeStep;
    WriteAccFiles(timeStep, dynFolder, analysis);
    console::OutLine(kAccDone);
    WriteElementStressFiles(timeStep, dynFolder, analysis);
    console::OutLine(kStressDone);
}

void WriteTimeHistoriesGrouped(const std::string& dynFolder, const CAnalysisData& analysis,
                               int groupCount, std::vector<uint32_t> groupSizes) {
    if (analysis.seismicWaves.empty()) return;
    const double timeStep = analysis.Wave().timeStep;
    WriteAccFiles(timeStep, dynFolder, analysis);
    console::OutLine(kAccDone);

    // Every group file must open before the first element file is written.
    std::vector<std::unique_ptr<WorkFileReader>> readers;
    for (int k = 0; k < groupCount; ++k) {
        readers.push_back(std::make_unique<WorkFileReader>(work_files::ElementStress(k)));
        RequireOpen(*readers.back(), work_files::ElementStress(k));
    }
    int64_t firstElement = 0;
    for (int k = 0; k < groupCount && static_cast<size_t>(k) < groupSizes.size(); ++k) {
        WriteStressFilesFrom(*readers[k], firstElement, groupSizes[k], WaveStepCount(analysis),
                             timeStep, dynFolder);
        firstElement += groupSizes[k];
    }
    console::OutLine(kStressDone);
    groupSizes.clear();
}
