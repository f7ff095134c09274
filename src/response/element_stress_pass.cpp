#include "response/element_stress_pass.hpp"

#include <algorithm>

#include "response/synthesis_extent.hpp"
#include "response/work_files.hpp"

StressStrainFileNames SingleSetNames() {
    return {work_files::kStrain, work_files::kStress, work_files::kMaxStrain,
            work_files::kMaxStress, work_files::kElementStress};
}

StressStrainFileNames GroupSetNames(int k) {
    return {work_files::Strain(k), work_files::Stress(k), work_files::MaxStrain(k),
            work_files::MaxStress(k), work_files::ElementStress(k)};
}

StressStrainFiles::StressStrainFiles(const StressStrainFileNames& names)
    : strain(names.strain, kRecordStreamBufferBytes),
      stress(names.stress, kRecordStreamBufferBytes),
      maxStrain(names.maxStrain),
      maxStress(names.maxStress),
      elementStress(names.elementStress) {}

ElementStressPass::ElementStressPass(const CAnalysisData& analysis, RecordSteps recordSteps,
                                     StrainHistoryFunction strainHistory)
    : analysis_(analysis),
      steps_(SynthesisExtent(analysis).steps),
      recordedSteps_(recordSteps == RecordSteps::Every ? steps_ : std::min<size_t>(steps_, 1)),
      strainHistory_(strainHistory),
      elementStressSum_(steps_) {}

void ElementStressPass::Run(const CElement& element, StressStrainFiles& files) {
    std::fill(elementStressSum_.begin(), elementStressSum_.end(), Vector4{});
    const ConstitutiveMatrix D =
        element.material ? ConstitutiveMatrix(element.material->D) : ConstitutiveMatrix();

    for (int g = 0; g < element.gaussCount; ++g) {
        strainHistory_(element, g, analysis_, series_);
        // A series shorter than the steps reads as zero strain beyond its end.
        for (int c : {0, 1, 3})
            if (series_[c].size() < steps_) series_[c].data.resize(steps_);
        Vector4 initialStress{};
        if (static_cast<size_t>(g) < element.gaussPoints.size()) {
            const RealVector& stress = element.gaussPoints[g].stress;
            for (size_t i = 0; i < std::min<size_t>(stress.size(), 4); ++i)
                initialStress[i] = stress[i];
        }

        const Complex* ex = series_[0].data.data();
        const Complex* ey = series_[1].data.data();
        const Complex* gxy = series_[3].data.data();
        GaussPeaks peaks;
        for (size_t t = 0; t < steps_; ++t) {
            const StepResponse r = EvaluateStep(D, initialStress, ex[t], ey[t], gxy[t]);
            if (t < recordedSteps_) {
                files.stress.Put(StressRecord(r));
                files.strain.Put(StrainRecord(r));
            }
            peaks.Update(r);
            Vector4& sum = elementStressSum_[t];
            for (int i = 0; i < 4; ++i) sum[i] += r.stress[i];
        }
        files.maxStress.Put(MaxStressRecord(peaks));
        files.maxStrain.Put(MaxStrainRecord(peaks));
    }

    for (const Vector4& sum : elementStressSum_) {
        const std::array<float, 3> kPa = {static_cast<float>(sum[0] * 1000.0 * 0.25),
                                          static_cast<float>(sum[1] * 1000.0 * 0.25),
                                          static_cast<float>(sum[3] * 1000.0 * 0.25)};
        files.elementStress.Put(kPa);
    }
}
