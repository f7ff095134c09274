// The central analysis object: the model as read, the wave and its spectrum, the constraints
// and the equation numbering. Every stage of a run works on it by reference.
#pragma once

#include <array>
#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "element/material.hpp"
#include "element/point.hpp"
#include "linalg/fourier_transform.hpp"
#include "linalg/small_matrix.hpp"
#include "model/boundary_condition.hpp"
#include "model/element.hpp"
#include "model/model_sources.hpp"
#include "model/seismic_wave.hpp"
#include "model/side_treatment.hpp"

using MaterialList = std::vector<boost::shared_ptr<DAT_Material>>;
using ConditionList = std::vector<boost::shared_ptr<CBoundaryCond>>;

class CAnalysisData {
  public:
    std::vector<CNode> nodes;
    std::vector<CElement> elements;
    ConditionList boundaryConds;  // all boundary conditions with their codes
    double timeStep = 0.0;        // s
    double tolerance = 0.05;      // TOL of the iteration
    int32_t iterationLimit = 10;
    double cutoffFrequency = 0.0;  // Hz
    int32_t frequencyCount = 0;    // lines 0 .. frequencyCount-1
    double effectiveStrainRatio = 0.0;
    int32_t sideBoundaryType = 0;  // the code as read: see SideTreatmentOf
    std::vector<CSeismicWave> seismicWaves;
    ComplexVector waveSpectrum;                         // forward transform of the padded wave
    std::unique_ptr<FourierTransform> transformHandle;  // length P, shared by the syntheses
    MaterialList materials;
    std::vector<int32_t> dofFixed;     // two per node: 1 fixed, 0 free
    std::vector<int32_t> equationMap;  // two per node: equation number or -1
    int32_t freeDofCount = 0;
    ModelSources sources;  // the files and lines the model was read from

    // Resets the constants to 0 and empties the model; with releaseTransform 1 also frees the
    // transform.
    void clear(int releaseTransform);

    // Helpers.
    const CSeismicWave& Wave() const { return seismicWaves.front(); }
    SideTreatment Sides() const { return SideTreatmentOf(sideBoundaryType); }
    int PaddedLength() const { return static_cast<int>(seismicWaves.front().acc.size()); }
    int SampleCount() const { return seismicWaves.front().sampleCount; }
};
