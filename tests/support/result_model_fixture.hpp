// Test support for the response syntheses and the result writers: small soil models in memory,
// work files written and read whole in a scratch working directory, pieces of the texts to compare.
#pragma once

#include <gmock/gmock.h>

#include <boost/make_shared.hpp>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <numbers>
#include <sstream>

#include "base/output_file.hpp"
#include "element/gauss_rule.hpp"
#include "element/shape_function.hpp"
#include "model/analysis_data.hpp"
#include "response/work_files.hpp"
#include "support/project_fixture.hpp"

// A scratch folder that is the working directory for its life (the work files lie there).
class ScratchWorkingDirectory : public ProjectFolder {
  public:
    ScratchWorkingDirectory() { std::filesystem::current_path(Root()); }
    ~ScratchWorkingDirectory() { std::filesystem::current_path(previous_); }
    // What writer(file) leaves in the file `path`.
    template <typename Writer>
    std::string Written(const std::string& path, Writer writer) const {
        OutputFile file(path, "w");
        writer(file);
        file.Close();
        return Read(path);
    }
    // Runs body in a forked child that must end with `status`; what the child wrote to stdout.
    template <typename Body>
    std::string ConsoleOfExit(int status, Body body) const {
        GTEST_FLAG_SET(death_test_style, "fast");  // the child works in this folder too
        EXPECT_EXIT((std::freopen("console.txt", "w", stdout), body()),
                    ::testing::ExitedWithCode(status), "");
        return Read("console.txt");
    }

  private:
    std::filesystem::path previous_ = std::filesystem::current_path();
};

// The wave samples (m/s2) zero-padded to P, with their spectrum, transform, step and line count.
inline void SetWave(CAnalysisData& analysis, const std::vector<double>& samples, size_t P,
                    double dt, int frequencyCount) {
    analysis.seismicWaves.assign(1, CSeismicWave());
    CSeismicWave& wave = analysis.seismicWaves[0];
    wave.timeStep = analysis.timeStep = dt;
    wave.sampleCount = static_cast<int>(samples.size());
    wave.acc = samples;
    wave.acc.resize(P, 0.0);
    analysis.frequencyCount = frequencyCount;
    analysis.transformHandle = std::make_unique<FourierTransform>(P);
    analysis.waveSpectrum = ComplexVector(P);
    for (size_t i = 0; i < P; ++i) analysis.waveSpectrum[i] = wave.acc[i];
    analysis.transformHandle->Forward(analysis.waveSpectrum.begin_ptr());
}

// A node with zero spectra of P/2 + 1 lines.
inline int AddNode(CAnalysisData& analysis, double x, double y) {
    CNode& node = analysis.nodes.emplace_back(x, y, 0.0);
    node.dispX = node.dispY = ComplexVector(analysis.PaddedLength() / 2 + 1);
    return static_cast<int>(analysis.nodes.size()) - 1;
}

// An element of 4, 6 or 8 nodes with its shape function and the rule of the argument given.
inline CElement& AddElement(CAnalysisData& analysis, const std::vector<int>& nodes,
                            int ruleArgument, const boost::shared_ptr<DAT_Material>& material) {
    CElement& element = analysis.elements.emplace_back();
    const int n = static_cast<int>(nodes.size());
    element.nodes = nodes;
    if (n == 4) element.shapeFunction.reset(new IsoParametricQuadSquare());
    if (n == 6) element.shapeFunction.reset(new ShapeFuncOfSecondTriangle());
    if (n == 8) element.shapeFunction.reset(new IsoParametricSecondSquare());
    element.gaussRule = boost::make_shared<DefaultGauss>(ruleArgument, n);
    element.gaussPoints = element.gaussRule->points;
    element.gaussCount = static_cast<int>(element.gaussPoints.size());
    element.ruleCount = element.gaussRule->count;
    element.material = material;
    return element;
}

// A row of `columns` 1 m 4-node elements (bottom nodes first), one elastic material of G/G0 = 0.8,
// `steps` zero samples at 0.01 s.
inline CAnalysisData SmallModel(int columns, int steps) {
    CAnalysisData model;
    size_t padded = 1;
    while (padded < size_t(steps)) padded *= 2;
    SetWave(model, std::vector<double>(steps, 0.0), padded, 0.01, int(padded / 2));
    for (int row = 0; row < 2; ++row)
        for (int i = 0; i <= columns; ++i) AddNode(model, 1.0 * i, row - 1.0);
    auto material = boost::make_shared<DAT_Elastic>();
    material->G0 = 50.0;
    material->G = 40.0;
    model.materials.push_back(material);
    for (int e = 0; e < columns; ++e)
        AddElement(model, {e, e + 1, columns + 2 + e, columns + 1 + e}, 2, material);
    model.tolerance = 0.05;
    model.iterationLimit = 10;
    return model;
}

template <typename T>
void WriteWords(const std::string& path, const std::vector<T>& values) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T));
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

// A scratch working directory and an empty analysis.
class SynthesisTest : public testing::Test {
  protected:
    ScratchWorkingDirectory project;
    CAnalysisData analysis;
};

// Six-value records of elements first .. first + count - 1 in work-file order, each value
// telling its place apart: 1000 element + 100 point + 10 step + i.
inline std::vector<float> Records(int first, int count, int steps, int points = 4) {
    std::vector<float> values;
    for (int e = first; e < first + count; ++e)
        for (int g = 0; g < points; ++g)
            for (int t = 0; t < steps; ++t)
                for (int i = 0; i < 6; ++i) values.push_back(1000 * e + 100 * g + 10 * t + i);
    return values;
}

template <typename... Args>
std::string Printf(const char* format, Args... args) {
    char text[512];
    std::snprintf(text, sizeof text, format, args...);
    return text;
}

// The stress line of an element from the record values code + 0 .. code + 5 (to tf/m2).
inline std::string StressLine(int element, double code, double ratio = 0.8) {
    const double k = 1000.0 / 9.80665;
    return Printf("%d %.4lf %.4lf %.4lf %.4lf %.4lf %.4lf %.4lf", element, code * k, (code + 1) * k,
                  (code + 2) * k, (code + 3) * k, (code + 4) * k, (code + 5) * k, ratio);
}

inline const std::string kClosingBlocks =
    "---- total head ----\n0\n---- fext ----\n0\n---- deviatric strain ----\n0\n"
    "---- pvsn & eq_epn ----\n0\n";

// The lines after the line `banner` up to the next one that starts with "----".
inline std::vector<std::string> BlockLines(const std::string& text, const std::string& banner) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    bool inside = false;
    for (std::string line; std::getline(in, line) && !(inside && line.starts_with("----"));) {
        if (inside) lines.push_back(line);
        inside = inside || line == banner;
    }
    return lines;
}

// Element number (first number of a line) -> how many lines of the block carry it.
inline std::map<int, int> LinesPerElement(const std::string& text, const std::string& banner) {
    std::map<int, int> counts;
    for (const std::string& line : BlockLines(text, banner)) ++counts[std::stoi(line)];
    return counts;
}
