// A soil column 20 m deep and one element wide with y fixed everywhere: every node moves in x
// alone, and the column shears as a one-dimensional layer on a rigid base.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/analysis_data.hpp"
#include "solve/solution_stage.hpp"
#include "structured_mesh.hpp"

// The solution stage with the run flag; returns what it wrote to standard output and to
// standard error.
inline std::pair<std::string, std::string> SolveCapturingConsole(
    CAnalysisData& analysis, bool equivalentLinear, const std::string& freeFieldFolder) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    RunSolution(analysis, equivalentLinear, freeFieldFolder);
    std::string out = testing::internal::GetCapturedStdout();
    return {out, testing::internal::GetCapturedStderr()};
}

// Occurrences of a text in a console output.
inline size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

struct SoilColumn {
    static constexpr double kDepth = 20.0;
    static constexpr double kModulus = 60.0;    // MPa: shear wave speed 182.6 m/s
    static constexpr double kDensity = 1.8e-3;  // MPa s2/m2
    static constexpr double kDamping = 0.05;

    CAnalysisData analysis;

    // Elastic with the constants above unless a material is given; no side treatment, one
    // iteration.
    SoilColumn(int nodesPerElement, int layers, boost::shared_ptr<DAT_Material> material = {}) {
        if (!material) material = ElasticMaterial(kModulus, kDamping, 0.3, kDensity);
        BuildStructuredMesh(SectionGrid{nodesPerElement, 1, layers, 1.0, kDepth, true}, material,
                            analysis);
        analysis.sideBoundaryType = 2;
        analysis.iterationLimit = 1;
    }

    // The wave as the reader leaves it: P samples (a power of two), the lines up to the cut-off,
    // the transform and the spectrum.
    void SetWave(const std::vector<double>& acc, double timeStep, double cutoff) {
        const int P = static_cast<int>(acc.size());
        analysis.timeStep = timeStep;
        analysis.seismicWaves.assign(1, CSeismicWave{});
        analysis.seismicWaves[0].acc = acc;
        analysis.seismicWaves[0].sampleCount = P;
        int count = 0;
        while (count < P && !(cutoff < (count / double(P)) / timeStep)) ++count;
        analysis.frequencyCount = std::min(count, P / 2 + 1);
        analysis.transformHandle = std::make_unique<FourierTransform>(P);
        analysis.waveSpectrum = ComplexVector(P);
        for (int k = 0; k < P; ++k) analysis.waveSpectrum[k] = Complex(acc[k], 0.0);
        analysis.transformHandle->Forward(analysis.waveSpectrum.begin_ptr());
    }
    std::pair<std::string, std::string> Solve(bool equivalentLinear) {
        return SolveCapturingConsole(analysis, equivalentLinear, "/nonexistent-free-field/");
    }

    const CNode& TopNode() const {
        for (const CNode& node : analysis.nodes)
            if (node.y == kDepth && node.x == 0.0) return node;
        return analysis.nodes.front();
    }
};
