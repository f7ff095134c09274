#include "response/synthesis_extent.hpp"

#include <algorithm>

SynthesisExtent::SynthesisExtent(const CAnalysisData& analysis) {
    if (analysis.seismicWaves.empty()) {
        transformLength = analysis.waveSpectrum.size();
        return;
    }
    transformLength = static_cast<size_t>(analysis.PaddedLength());
    const int count = analysis.SampleCount();
    steps = std::min(static_cast<size_t>(std::max(count, 0)), transformLength);
}

const FourierTransform& BackwardTransformFor(const CAnalysisData& analysis, size_t P,
                                             std::unique_ptr<FourierTransform>& own) {
    if (analysis.transformHandle && analysis.transformHandle->Length() == P)
        return *analysis.transformHandle;
    if (!own || own->Length() != P) own = std::make_unique<FourierTransform>(P);
    return *own;
}
