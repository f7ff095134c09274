#include "run/soil_column.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "run/run_control.hpp"
#include "run/solution_stage.hpp"

SoilColumn::SoilColumn(int nodesPerElement, int layers, boost::shared_ptr<DAT_Material> material) {
    if (!material) material = ElasticMaterial(kModulus, kDamping, 0.3, kDensity);
    SectionGrid grid;
    grid.nodesPerElement = nodesPerElement;
    grid.columns = 1;
    grid.layers = layers;
    grid.width = 1.0;
    grid.depth = kDepth;
    grid.fixVertical = true;
    BuildStructuredMesh(grid, material, analysis);
    analysis.sideBoundaryType = 2;
    analysis.iterationLimit = 1;
}

void SetTestWave(CAnalysisData& analysis, const std::vector<double>& acc, double timeStep,
                 double cutoff) {
    const size_t P = acc.size();
    analysis.timeStep = timeStep;
    analysis.seismicWaves.assign(1, CSeismicWave{});
    analysis.seismicWaves[0].acc = acc;
    analysis.seismicWaves[0].sampleCount = static_cast<int>(P);
    int count = 0;
    while (count < static_cast<int>(P) && !(cutoff < (count / double(P)) / timeStep)) ++count;
    analysis.frequencyCount = std::min(count, static_cast<int>(P / 2 + 1));
    analysis.transformHandle = std::make_unique<FourierTransform>(P);
    analysis.waveSpectrum = ComplexVector(P);
    for (size_t k = 0; k < P; ++k) analysis.waveSpectrum[k] = Complex(acc[k], 0.0);
    analysis.transformHandle->Forward(analysis.waveSpectrum.begin_ptr());
}

std::pair<std::string, std::string> SolveCapturingConsole(CAnalysisData& analysis,
                                                          bool equivalentLinear,
                                                          const std::string& freeFieldFolder) {
    CRunControl run("", "");
    run.equivalentLinear = equivalentLinear;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    RunSolution(analysis, run, freeFieldFolder);
    std::string out = testing::internal::GetCapturedStdout();
    return {out, testing::internal::GetCapturedStderr()};
}

const CNode& SoilColumn::TopNode() const {
    for (const CNode& node : analysis.nodes)
        if (node.y == kDepth && node.x == 0.0) return node;
    return analysis.nodes.front();
}
