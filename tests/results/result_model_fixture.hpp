// Test support for the result writers: a small soil model in memory, work files written into a
// scratch working directory, and pieces of the texts to compare.
#pragma once

#include <gmock/gmock.h>

#include <boost/make_shared.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "element/gauss_rule.hpp"
#include "element/shape_function.hpp"
#include "run/analysis_data.hpp"
#include "support/project_fixture.hpp"

// A scratch folder that is the working directory for its life (the work files lie there).
class ScratchWorkingDirectory : public ProjectFolder {
  public:
    ScratchWorkingDirectory() { std::filesystem::current_path(Root()); }
    ~ScratchWorkingDirectory() { std::filesystem::current_path(previous_); }
    // What writer(file) leaves in the file `path`.
    template <typename Writer>
    std::string Written(const std::string& path, Writer writer) const {
        std::FILE* file = std::fopen(path.c_str(), "w");
        writer(file);
        std::fclose(file);
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

// A row of `columns` 4-node elements, 1 m high (bottom node row first), one elastic material of
// G/G0 = 0.8, a wave of `steps` samples at 0.01 s; all spectra zero.
inline CAnalysisData SmallModel(int columns, int steps) {
    CAnalysisData model;
    int padded = 1;
    while (padded < steps) padded *= 2;
    for (int row = 0; row < 2; ++row)
        for (int i = 0; i <= columns; ++i) {
            model.nodes.emplace_back(1.0 * i, row - 1.0, 0.0);
            model.nodes.back().dispX = model.nodes.back().dispY = ComplexVector(padded);
        }
    auto material = boost::make_shared<DAT_Elastic>();
    material->G0 = 50.0;
    material->G = 40.0;
    model.materials.push_back(material);
    for (int e = 0; e < columns; ++e) {
        CElement& element = model.elements.emplace_back();
        element.nodes = {e, e + 1, columns + 2 + e, columns + 1 + e};
        element.gaussRule = boost::make_shared<DefaultGauss>(2, 4);
        element.gaussPoints = element.gaussRule->points;
        element.gaussCount = static_cast<int>(element.gaussPoints.size());
        element.ruleCount = element.gaussRule->count;
        element.shapeFunction = boost::make_shared<IsoParametricQuadSquare>();
        element.material = material;
    }
    CSeismicWave& wave = model.seismicWaves.emplace_back();
    wave.timeStep = model.timeStep = 0.01;
    wave.sampleCount = steps;
    wave.acc.assign(padded, 0.0);
    model.frequencyCount = padded / 2;
    model.waveSpectrum = ComplexVector(padded);
    model.transformHandle = std::make_unique<FourierTransform>(padded);
    model.tolerance = 0.05;
    model.iterationLimit = 10;
    return model;
}

template <typename T>
void WriteWords(const std::string& path, const std::vector<T>& values) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T));
}

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
