// How far the syntheses run: the transform length P and the number of output steps, read from
// the analysis object with the guards that keep a half-built object from being read past its end.
#pragma once

#include <cstddef>
#include <memory>

#include "linalg/fourier_transform.hpp"
#include "model/analysis_data.hpp"

struct SynthesisExtent {
    size_t transformLength = 0;  // P: the length of the padded wave
    size_t steps = 0;            // the wave's sample count, never more than P

    explicit SynthesisExtent(const CAnalysisData& analysis);
};

// The analysis object's transform when it has the length P; otherwise one of that length, made
// in `own`, so that a missing or mismatched handle never reads beyond an array.
const FourierTransform& BackwardTransformFor(const CAnalysisData& analysis, size_t P,
                                             std::unique_ptr<FourierTransform>& own);
