// A soil column 20 m deep and one element wide with y fixed everywhere: every node moves in x
// alone, and the column shears as a one-dimensional layer on a rigid base. For the physical
// checks of the solution and of the equivalent-linear iteration.
#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "run/analysis_data.hpp"
#include "structured_mesh.hpp"

// Gives the analysis a wave as the reader leaves it: P samples (a power of two), the lines up to
// the cut-off, the transform and the spectrum.
void SetTestWave(CAnalysisData& analysis, const std::vector<double>& acc, double timeStep,
                 double cutoff);

// The solution stage with the run flag; returns what it wrote to standard output and to
// standard error.
std::pair<std::string, std::string> SolveCapturingConsole(CAnalysisData& analysis,
                                                          bool equivalentLinear,
                                                          const std::string& freeFieldFolder);

struct SoilColumn {
    static constexpr double kDepth = 20.0;
    static constexpr double kModulus = 60.0;    // MPa: shear wave speed 182.6 m/s
    static constexpr double kDensity = 1.8e-3;  // MPa s2/m2
    static constexpr double kDamping = 0.05;

    CAnalysisData analysis;

    // Elastic with the constants above unless a material is given; side treatment 2, one
    // iteration.
    SoilColumn(int nodesPerElement, int layers, boost::shared_ptr<DAT_Material> material = {});

    void SetWave(const std::vector<double>& acc, double timeStep, double cutoff) {
        SetTestWave(analysis, acc, timeStep, cutoff);
    }
    std::pair<std::string, std::string> Solve(bool equivalentLinear) {
        return SolveCapturingConsole(analysis, equivalentLinear, "/nonexistent-free-field/");
    }

    const CNode& TopNode() const;
};
