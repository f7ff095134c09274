// Times the output stages of the per-step path against the disk: the heads of the step files,
// the stress and strain passes, the maxima and the text time histories, on a rectangular soil
// section with synthetic work files. Figures on standard error; progress on standard output.
//
//   output_bench [folder] [steps] [columns] [rows] [workers]
//
// Workers default to the program's own choice: all processors but one.
#include <fcntl.h>
#include <omp.h>
#include <unistd.h>

#include <boost/make_shared.hpp>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "base/output_file.hpp"
#include "base/platform.hpp"
#include "model/analysis_data.hpp"
#include "response/work_files.hpp"
#include "results/maximum_model.hpp"
#include "results/record_batches.hpp"
#include "results/step_model.hpp"
#include "results/time_history_text.hpp"

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point since) {
    return std::chrono::duration<double>(Clock::now() - since).count();
}

CAnalysisData Section(int columns, int rows, int steps) {
    CAnalysisData model;
    for (int r = 0; r <= rows; ++r)
        for (int c = 0; c <= columns; ++c)
            model.nodes.emplace_back(0.5 * c, -0.5 * (rows - r), 0.0);
    auto material = boost::make_shared<DAT_Elastic>();
    material->G0 = 50.0;
    material->G = 37.5;
    model.materials.push_back(material);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c) {
            CElement element;
            const int base = r * (columns + 1) + c;
            element.nodes = {base, base + 1, base + columns + 2, base + columns + 1};
            element.gaussCount = 4;
            element.material = material;
            model.elements.push_back(element);
        }
    CSeismicWave wave;
    wave.timeStep = 0.01;
    wave.sampleCount = steps;
    model.seismicWaves.push_back(wave);
    model.tolerance = 0.05;
    model.iterationLimit = 10;
    return model;
}

// Values of a plausible size for each file: they decide the width of the numbers.
template <typename T>
void WriteSeries(const std::string& path, size_t count, double scale) {
    std::vector<T> values(1 << 20);
    std::ofstream out(path, std::ios::binary);
    for (size_t done = 0; done < count; done += values.size()) {
        const size_t n = std::min(values.size(), count - done);
        for (size_t i = 0; i < n; ++i)
            values[i] = static_cast<T>(scale * std::sin(0.001 * static_cast<double>(done + i)));
        out.write(reinterpret_cast<const char*>(values.data()), n * sizeof(T));
    }
}

void WriteWorkFiles(const CAnalysisData& model, const std::vector<uint32_t>& groupSizes) {
    const size_t nodes = model.nodes.size(), steps = model.SampleCount();
    WriteSeries<double>(work_files::kDisp, nodes * steps * 2, 0.02);
    WriteSeries<double>(work_files::kAcc, nodes * steps * 2, 3.0);
    WriteSeries<double>(work_files::kMaxDisp, nodes * 2, 0.02);
    WriteSeries<double>(work_files::kMaxAcc, nodes * 2, 3.0);
    for (size_t k = 0; k < groupSizes.size(); ++k) {
        const size_t records = size_t{groupSizes[k]} * 4 * 6;
        WriteSeries<float>(work_files::Stress(k), records * steps, 0.3);
        WriteSeries<float>(work_files::Strain(k), records * steps, 3e-4);
        WriteSeries<float>(work_files::MaxStress(k), records, 0.3);
        WriteSeries<float>(work_files::MaxStrain(k), records, 3e-4);
        WriteSeries<float>(work_files::ElementStress(k), size_t{groupSizes[k]} * steps * 3, 300.0);
    }
}

uint64_t FolderBytes(const std::string& folder) {
    uint64_t bytes = 0;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file()) bytes += entry.file_size();
    return bytes;
}

// Sequential write of `bytes` zeros in 1 MiB blocks, synced: the disk's own rate.
double DiskRate(const std::string& path, uint64_t bytes) {
    const std::vector<char> block(1 << 20, 0);
    const auto start = Clock::now();
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    for (uint64_t done = 0; done < bytes; done += block.size())
        if (write(fd, block.data(), block.size()) < 0) break;
    fdatasync(fd);
    close(fd);
    const double rate = static_cast<double>(bytes) / Seconds(start);
    fs::remove(path);
    return rate;
}

struct Stage {
    const char* name;
    std::function<void()> run;
    std::string folder;  // where its output lies
};

}  // namespace

int main(int argc, char** argv) {
    const std::string root = argc > 1 ? argv[1] : "output_bench_work";
    const int steps = argc > 2 ? std::stoi(argv[2]) : 60;
    const int columns = argc > 3 ? std::stoi(argv[3]) : 249;
    const int rows = argc > 4 ? std::stoi(argv[4]) : 99;
    const int workers = argc > 5 ? std::stoi(argv[5]) : std::max(1, ProcessorCount() - 1);
    omp_set_num_threads(workers);

    fs::create_directories(root);
    fs::current_path(root);
    fs::create_directories("output");
    fs::create_directories("dyn");
    const CAnalysisData model = Section(columns, rows, steps);
    const int groupCount = workers;
    std::vector<uint32_t> groupSizes(groupCount, model.elements.size() / groupCount);
    groupSizes.back() += model.elements.size() % groupCount;
    WriteWorkFiles(model, groupSizes);
    sync();
    std::cerr << model.nodes.size() << " nodes, " << model.elements.size() << " elements, " << steps
              << " steps, " << omp_get_max_threads() << " worker thread(s)\n";

    const std::vector<int> batches = BatchFileCounts(groupCount);
    const std::vector<Stage> stages = {
        {"step heads", [&] { WriteStepHeadFiles(model, "output/", steps); }, "output"},
        {"stress and strain passes",
         [&] {
             for (RecordKind kind : {RecordKind::kStress, RecordKind::kStrain})
                 AppendRecordPass(kind, model, "output/", steps, groupSizes, batches);
         },
         "output"},
        {"maxima",
         [&] {
             OutputFile file("output/output_max.inp", "w");
             WriteMaximumModelGrouped(model, groupCount, groupSizes, file);
             file.Close();
         },
         ""},
        {"text time histories",
         [&] { WriteTimeHistoriesGrouped("dyn/", model, groupCount, groupSizes); }, "dyn"},
    };
    uint64_t before = 0;
    for (const Stage& stage : stages) {
        const auto start = Clock::now();
        stage.run();
        const double returned = Seconds(start);
        sync();
        const double onDisk = Seconds(start);
        uint64_t bytes = 0;
        if (stage.folder == "output") {
            const uint64_t now = FolderBytes("output");
            bytes = now - before;
            before = now;
        } else if (stage.folder == "dyn") {
            bytes = FolderBytes("dyn");
        } else {
            bytes = fs::file_size("output/output_max.inp");
            before += bytes;
        }
        const double disk = DiskRate("disk_rate.bin", std::max<uint64_t>(bytes, 64 << 20));
        std::fprintf(stderr,
                     "%-26s %9.1f MB  %7.2f s (%7.2f s to disk)  %7.1f MB/s  disk %7.1f MB/s  "
                     "ratio %.2f\n",
                     stage.name, bytes / 1e6, returned, onDisk, bytes / 1e6 / onDisk, disk / 1e6,
                     bytes / onDisk / disk);
    }
    return 0;
}
