// The input acceleration record: a header line and "time,acceleration" samples in gal,
// resampled on the analysis time step, padded to a power of two and transformed.
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "base/console.hpp"
#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "input/line_reader.hpp"
#include "input/model_memory.hpp"
#include "input/model_readers.hpp"
#include "input/wave_resampling.hpp"
#include "model/analysis_data.hpp"

namespace {

// The fields of a header line, split at every comma with nothing trimmed.
std::vector<std::string> SplitAtCommas(const std::string& line) {
    std::vector<std::string> fields;
    size_t start = 0;
    for (;;) {
        const size_t comma = line.find(',', start);
        fields.push_back(line.substr(start, comma - start));
        if (comma == std::string::npos) return fields;
        start = comma + 1;
    }
}

struct WaveFile {
    bool hasHeader = false;
    int headerLine = 0;
    std::vector<std::string> header;
    std::vector<double> times;   // s
    std::vector<double> values;  // gal
    std::vector<int> lines;
    int lastLine = 0;
};

// A longer record than this cannot be padded and transformed in one piece.
constexpr double kLongestWave = 1073741824.0;  // 2^30 samples

}  // namespace

void ReadSeismic(CAnalysisData& analysis, const std::string& path) {
    WaveFile file;
    const bool read =
        ReadDataLines(path, "SesmicData:Reading error", [&](const std::string& line, int number) {
            file.lastLine = number;
            if (!file.hasHeader) {
                file.hasHeader = true;
                file.headerLine = number;
                file.header = SplitAtCommas(line);
                return;
            }
            double t = 0.0, a = 0.0;
            if (std::sscanf(line.c_str(), "%lf,%lf", &t, &a) == 2) {
                file.times.push_back(t);
                file.values.push_back(a);
                file.lines.push_back(number);
            }
        });
    if (!read) return;
    console::OutF("Input GAL\n");

    if (file.header.size() < 3) {
        StopOnBadInput(path, file.headerLine,
                       "the header needs three comma-separated fields, it has " +
                           std::to_string(file.header.size()));
    }
    // The second field is read and not used; the third is the amplitude factor.
    double factor = 0.0;
    if (std::sscanf(file.header[2].c_str(), "%lf", &factor) != 1) factor = 0.0;
    ModelSources& sources = analysis.sources;
    sources.wavePath = path;
    sources.waveHeaderLine = file.headerLine;
    sources.waveFactor = factor;
    sources.waveSamples.reserve(file.times.size());
    for (size_t i = 0; i < file.times.size(); ++i)
        sources.waveSamples.push_back({file.times[i], file.values[i], file.lines[i]});
    for (double& value : file.values) value = value * 0.01 * factor;  // gal to m/s2
    const double tEnd = file.times.empty() ? 0.0 : file.times.back();

    if (analysis.timeStep == 0.0) {
        // No wave, so nothing after this can run.
        StopRun(ExitStatus::kBadInput, {"時間間隔が設定されておりません\n"});
    }
    if (!(analysis.timeStep > 0.0) || !std::isfinite(analysis.timeStep)) {
        char fault[120];
        std::snprintf(fault, sizeof fault, "the time step %g s is not a positive finite number",
                      analysis.timeStep);
        StopOnBadInput(sources.constantsPath, ModelSources::LineOf(sources.constantLines, 2),
                       fault);
    }
    const double tStart = 0.0;
    const double length = ResampledLength(tStart, tEnd, analysis.timeStep);
    if (!(length >= 1.0) || !(length <= kLongestWave)) {
        char fault[160];
        std::snprintf(fault, sizeof fault,
                      "time step %g and last sample time %g give no wave of 1 to 2^30 samples",
                      analysis.timeStep, tEnd);
        StopOnBadInput(path, file.lastLine, fault);
    }
    // The padded record must fit in memory with its spectrum before any of it is allocated.
    const uint64_t paddedLength = PowerOfTwoAtLeast(static_cast<size_t>(length));
    if (WaveBytes(paddedLength) > MemoryBudgetBytes()) {
        char fault[240];
        std::snprintf(fault, sizeof fault,
                      "time step %g and last sample time %g give a wave of %.0f samples, padded to "
                      "%llu, which needs %s of memory, more than the %s of this machine",
                      analysis.timeStep, tEnd, length,
                      static_cast<unsigned long long>(paddedLength),
                      MegabytesText(WaveBytes(paddedLength)).c_str(),
                      MegabytesText(MemoryBudgetBytes()).c_str());
        StopOnBadInput(path, file.lastLine, fault);
    }

    CSeismicWave wave;
    wave.id = 0;
    wave.timeStep = analysis.timeStep;
    wave.sampleCount = static_cast<int>(length);
    wave.acc.assign(static_cast<size_t>(wave.sampleCount), 0.0);
    if (!ResampleLinear(file.times, file.values, analysis.timeStep, tStart, tEnd, wave.acc))
        console::OutF("地震波形が不正な時間間隔で指定されました\n");

    const size_t n = wave.acc.size();
    const size_t padded = PowerOfTwoAtLeast(n);
    if (padded != n) {
        console::OutF("FFT用にデータを2のべき乗に変更します");
        console::OutF("%dから%d個へ変更します\n", static_cast<int>(n), static_cast<int>(padded));
        wave.acc.resize(padded, 0.0);
    }
    const double p = static_cast<double>(padded);
    console::OutF("SeismicTime = %lf\n", p * analysis.timeStep);
    console::OutF(" Seismic data : fmin = %.2lf\tfmax = %.2lf\n", 1.0 / (p * analysis.timeStep),
                  0.5 / analysis.timeStep);

    // The cut-off never passes the Nyquist frequency; at or above it, it becomes it.
    analysis.frequencyCount =
        CountFrequencyLines(analysis.cutoffFrequency, padded, analysis.timeStep);
    const int halfPlusOne = static_cast<int>(padded / 2 + 1);
    if (!(halfPlusOne > analysis.frequencyCount)) {
        analysis.frequencyCount = halfPlusOne;
        analysis.cutoffFrequency = 0.5 / analysis.timeStep;
    }

    analysis.transformHandle = std::make_unique<FourierTransform>(padded);
    analysis.waveSpectrum = ComplexVector(padded);
    for (size_t i = 0; i < padded; ++i) analysis.waveSpectrum[i] = Complex(wave.acc[i], 0.0);
    analysis.transformHandle->Forward(analysis.waveSpectrum.begin_ptr());

    analysis.seismicWaves.push_back(std::move(wave));
}
