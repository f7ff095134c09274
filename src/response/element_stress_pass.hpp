// The pass over one element that both stress and strain syntheses share: strain histories of
// each integration point, stress in the time domain, the point's peaks, and the element stress
// summed over its points, streamed to one set of five work files.
#pragma once

#include <string>
#include <vector>

#include "fem/element_matrices.hpp"
#include "model/analysis_data.hpp"
#include "model/element.hpp"
#include "response/gauss_step_response.hpp"
#include "response/work_file_writer.hpp"

// The record streams take 24 bytes per step and point: they get large buffers of their own.
constexpr size_t kRecordStreamBufferBytes = 262144;

struct StressStrainFileNames {
    std::string strain;
    std::string stress;
    std::string maxStrain;
    std::string maxStress;
    std::string elementStress;
};

// "work_strain.dat", "work_stress.dat", "work_Mstrain.dat", "work_Mstress.dat",
// "work_AveStress.dat".
StressStrainFileNames SingleSetNames();
// The same stems with the group number k: "work_strain" + k + ".dat", ...
StressStrainFileNames GroupSetNames(int k);

// One set of work files, created in the order strain, stress, maximum strain, maximum stress,
// element stress.
struct StressStrainFiles {
    WorkFileWriter strain;
    WorkFileWriter stress;
    WorkFileWriter maxStrain;
    WorkFileWriter maxStress;
    WorkFileWriter elementStress;

    explicit StressStrainFiles(const StressStrainFileNames& names);
};

enum class RecordSteps {
    FirstOnly,  // stress and strain records of step 0 alone
    Every,      // stress and strain records of every step
};

using StrainHistoryFunction = void (*)(const CElement&, int, const CAnalysisData&, StrainSeries&);

// Holds the workspace of one thread: the strain series of a point and the element stress sums.
class ElementStressPass {
  public:
    ElementStressPass(const CAnalysisData& analysis, RecordSteps recordSteps,
                      StrainHistoryFunction strainHistory);

    // Writes, for each integration point in order, the stress and strain records of the steps
    // chosen and the two maximum records; then the element stress of every step, x, y, xy,
    // as the sum over the points times 1000.0 times 0.25 (kPa).
    void Run(const CElement& element, StressStrainFiles& files);

  private:
    const CAnalysisData& analysis_;
    size_t steps_;
    size_t recordedSteps_;
    StrainHistoryFunction strainHistory_;
    StrainSeries series_;
    std::vector<Vector4> elementStressSum_;
};
