// The self-weight result ("output0.inp"): initial stresses of every integration point and the
// strengths of the hyperbolic material.
#include "fuzz_support.hpp"
#include "input/model_readers.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return Exercise([&] {
        CAnalysisData analysis;
        ReadModel(analysis, FixedModelFiles());
        ReadSelfWeightStress(analysis, PutInput("output0.inp", data, size));
    });
}
