// Throughput of the response syntheses on a structured ground model, against the sequential
// write speed of the disk the work files go to.
//
// Usage: synthesis_bench [folder] [steps] [columns] [rows]
//   folder   where the work files are written (default: the current directory)
//   steps    samples of the wave (default 1000); the transform length is the next power of two
//   columns, rows   elements of the 4-node grid (default 249 x 99: 25,000 nodes, 50,000 equations)
//
// Each synthesis is timed twice: until it returns (the data may still sit in the page cache) and
// until its files are on the disk (fdatasync). The disk's own speed is measured the same way, by
// writing as many bytes of zeros in 1 MiB blocks followed by fdatasync, as `dd conv=fdatasync`
// does. The figures go to standard error; standard output carries the syntheses' own progress.
#include <fcntl.h>
#include <omp.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "base/platform.hpp"
#include "element/gauss_rule.hpp"
#include "element/shape_function.hpp"
#include "model/analysis_data.hpp"
#include "response/element_stress_pass.hpp"
#include "response/motion_synthesis.hpp"
#include "response/stress_strain_synthesis.hpp"
#include "response/work_files.hpp"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point since) {
    return std::chrono::duration<double>(Clock::now() - since).count();
}

// A rectangular soil section of columns x rows 4-node elements, 1 m cells, one elastic
// material, transfer spectra that fall off with frequency and rise toward the surface.
void BuildModel(CAnalysisData& analysis, int columns, int rows, int steps) {
    size_t P = 1;
    while (P < size_t(steps)) P *= 2;
    const double dt = 0.01;
    CSeismicWave wave;
    wave.timeStep = dt;
    wave.sampleCount = steps;
    wave.acc.assign(P, 0.0);
    for (int t = 0; t < steps; ++t)
        wave.acc[t] = std::sin(0.05 * t) * std::exp(-0.002 * t) + 0.3 * std::sin(0.71 * t);
    analysis.seismicWaves.assign(1, wave);
    analysis.timeStep = dt;
    analysis.frequencyCount = static_cast<int>(P / 4);
    analysis.transformHandle = std::make_unique<FourierTransform>(P);
    analysis.waveSpectrum = ComplexVector(P);
    for (size_t i = 0; i < P; ++i) analysis.waveSpectrum[i] = wave.acc[i];
    analysis.transformHandle->Forward(analysis.waveSpectrum.begin_ptr());

    const size_t lines = P / 2 + 1;
    for (int j = 0; j <= rows; ++j) {
        for (int i = 0; i <= columns; ++i) {
            CNode node(i, j, 0.0);
            node.dispX = ComplexVector(lines);
            node.dispY = ComplexVector(lines);
            const double height = double(j) / rows;
            for (int k = 1; k < analysis.frequencyCount; ++k) {
                const double f = double(k) / (P * dt);
                const Complex h = Complex(1.0, 0.3 * f) / Complex(1.0 + f * f, 0.1 * f);
                node.dispX[k] = 1e-3 * height * h;
                node.dispY[k] = 1e-4 * height * std::sin(0.1 * i) * h;
            }
            analysis.nodes.push_back(node);
        }
    }

    boost::shared_ptr<DAT_Material> material(new DAT_Elastic());
    const double G = 50.0, nu = 0.35, L = 2.0 * G * nu / (1.0 - 2.0 * nu);
    for (uint32_t a = 0; a < 3; ++a)
        for (uint32_t b = 0; b < 3; ++b) material->D(a, b) = Complex(a == b ? L + 2 * G : L, 0.0);
    material->D(3, 3) = Complex(G, 5.0);
    boost::shared_ptr<DAT_ShapeFunction> shape(new IsoParametricQuadSquare());
    boost::shared_ptr<DefaultGauss> rule(new DefaultGauss(2, 4));
    for (int j = 0; j < rows; ++j) {
        for (int i = 0; i < columns; ++i) {
            const int n0 = j * (columns + 1) + i;
            CElement element;
            element.nodes = {n0, n0 + 1, n0 + columns + 2, n0 + columns + 1};
            element.gaussRule = rule;
            element.gaussPoints = rule->points;
            element.gaussCount = static_cast<int>(rule->points.size());
            element.ruleCount = rule->count;
            element.material = material;
            element.shapeFunction = shape;
            for (CGauss& g : element.gaussPoints)
                g.stress = RealVector{-10.0 * j, -20.0 * j, -15.0 * j, 0.0};
            analysis.elements.push_back(element);
        }
    }
}

void SyncFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_WRONLY);
    if (fd < 0) return;
    ::fdatasync(fd);
    ::close(fd);
}

uint64_t TotalSize(const std::vector<std::string>& files) {
    uint64_t bytes = 0;
    for (const std::string& f : files) bytes += fs::file_size(f);
    return bytes;
}

// Writes bytes of zeros in 1 MiB blocks and waits for the disk; returns bytes per second.
double DiskWriteSpeed(uint64_t bytes) {
    const std::string path = "synthesis_bench_disk.tmp";
    std::vector<char> block(1 << 20, 0);
    const auto start = Clock::now();
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    for (uint64_t done = 0; done < bytes; done += block.size())
        if (::write(fd, block.data(), block.size()) < 0) break;
    ::fdatasync(fd);
    ::close(fd);
    const double s = Seconds(start);
    fs::remove(path);
    return double(bytes) / s;
}

template <typename Run>
void Measure(const char* name, const std::vector<std::string>& files, Run run) {
    const auto start = Clock::now();
    run();
    const double returned = Seconds(start);
    for (const std::string& f : files) SyncFile(f);
    const double onDisk = Seconds(start);
    const uint64_t bytes = TotalSize(files);
    const double disk = DiskWriteSpeed(bytes);
    const double rate = double(bytes) / onDisk;
    std::fprintf(stderr,
                 "%-28s %8.1f MB  returned %7.2f s  on disk %7.2f s  %7.1f MB/s  "
                 "disk %7.1f MB/s  ratio %.2f\n",
                 name, bytes / 1e6, returned, onDisk, rate / 1e6, disk / 1e6, rate / disk);
    for (const std::string& f : files) fs::remove(f);
}

std::vector<std::string> SetFiles(const StressStrainFileNames& n) {
    return {n.strain, n.stress, n.maxStrain, n.maxStress, n.elementStress};
}

}  // namespace

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : ".";
    const int steps = argc > 2 ? std::stoi(argv[2]) : 1000;
    const int columns = argc > 3 ? std::stoi(argv[3]) : 249;
    const int rows = argc > 4 ? std::stoi(argv[4]) : 99;
    fs::current_path(folder);

    // The worker count of a run: all processors but one, at least one.
    const int workers = std::max(ProcessorCount() - 1, 1);
    omp_set_num_threads(workers);

    CAnalysisData analysis;
    BuildModel(analysis, columns, rows, steps);
    std::fprintf(stderr, "%zu nodes (%zu equations), %zu elements, %d steps, P = %d, %d workers\n",
                 analysis.nodes.size(), 2 * analysis.nodes.size(), analysis.elements.size(), steps,
                 analysis.PaddedLength(), workers);

    Measure("displacement", {work_files::kDisp, work_files::kMaxDisp},
            [&] { CalcDisplacementHistory(analysis); });
    Measure("acceleration", {work_files::kAcc, work_files::kMaxAcc},
            [&] { CalcAccelerationHistory(analysis); });

    // The driver's partition: equal groups, the remainder in the last.
    const uint32_t quotient = analysis.elements.size() / workers;
    std::vector<uint32_t> groupSizes(workers, quotient);
    groupSizes.back() += analysis.elements.size() % workers;
    std::vector<std::string> groupFiles;
    for (int k = 0; k < workers; ++k) {
        const std::vector<std::string> f = SetFiles(GroupSetNames(k));
        groupFiles.insert(groupFiles.end(), f.begin(), f.end());
    }
    Measure("stress and strain, groups", groupFiles,
            [&] { RunStressStrainGroups(analysis, workers, groupSizes); });
    Measure("stress and strain, single", SetFiles(SingleSetNames()),
            [&] { CalcStressStrainSerial(analysis); });
    return 0;
}
