// One of the six model files read in the order of the file list, the others fixed, so that the
// readers after it take what it leaves: the constants (which the wave reader uses at once), the
// wave (header, samples, resampling, padding, spectrum), the nodes, the elements (bound to the
// nodes and materials), the materials (three models) or the boundary conditions. The build names
// the file with VARNEK_FUZZ_FILE, a member of ModelFiles.
#include "fuzz_support.hpp"

#define VARNEK_STRINGIFY(x) #x
#define VARNEK_NAME_OF(x) VARNEK_STRINGIFY(x)

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return Exercise([&] {
        ModelFiles files = FixedModelFiles();
        files.VARNEK_FUZZ_FILE = PutInput(VARNEK_NAME_OF(VARNEK_FUZZ_FILE) "-input", data, size);
        CAnalysisData analysis;
        ReadModel(analysis, files);
    });
}
