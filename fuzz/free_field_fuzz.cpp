// A free-field motion file of a side column ("RFF_<n>.dat"): its node, then one complex value
// per frequency line.
#include "fuzz_support.hpp"
#include "input/free_field.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return Exercise([&] {
        CAnalysisData analysis;
        ReadModel(analysis, FixedModelFiles());
        NumberEquationsForHarness(analysis);
        PutInput("ff/RFF_3.dat", data, size);
        std::vector<ComplexVector> motion;
        ReadFreeFieldFiles(motion, HarnessFolder() + "ff/", analysis);
    });
}
