// Small in-memory analyses for the synthesis tests: a wave with its spectrum and transform, nodes
// with transfer spectra; the work files read whole.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "run/analysis_data.hpp"
#include "support/project_fixture.hpp"

// A scratch folder as the working directory, where the syntheses leave their work files, and an
// empty analysis.
class SynthesisTest : public testing::Test {
  protected:
    void SetUp() override { std::filesystem::current_path(project.Root()); }
    void TearDown() override { std::filesystem::current_path(previous_); }

    ProjectFolder project;
    CAnalysisData analysis;

  private:
    std::filesystem::path previous_ = std::filesystem::current_path();
};

// The wave samples (m/s2) zero-padded to P, their forward spectrum, the transform, the step dt
// and frequencyCount lines of analysis.
inline void SetWave(CAnalysisData& analysis, const std::vector<double>& samples, size_t P,
                    double dt, int frequencyCount) {
    CSeismicWave wave;
    wave.timeStep = analysis.timeStep = dt;
    wave.sampleCount = static_cast<int>(samples.size());
    wave.acc = samples;
    wave.acc.resize(P, 0.0);
    analysis.seismicWaves.assign(1, wave);
    analysis.frequencyCount = frequencyCount;
    analysis.transformHandle = std::make_unique<FourierTransform>(P);
    analysis.waveSpectrum = ComplexVector(P);
    for (size_t i = 0; i < P; ++i) analysis.waveSpectrum[i] = wave.acc[i];
    analysis.transformHandle->Forward(analysis.waveSpectrum.begin_ptr());
}

// A node with zero spectra of P/2 + 1 lines.
inline int AddNode(CAnalysisData& analysis, double x, double y) {
    CNode node(x, y, 0.0);
    node.dispX = node.dispY = ComplexVector(analysis.PaddedLength() / 2 + 1);
    analysis.nodes.push_back(node);
    return static_cast<int>(analysis.nodes.size()) - 1;
}

// The file read whole as little-endian values (the test hosts are little-endian too).
template <typename T>
std::vector<T> ReadValues(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<T> values(bytes.size() / sizeof(T));
    std::memcpy(values.data(), bytes.data(), values.size() * sizeof(T));
    return values;
}
