// The file list: its lines name the model's files within the project folder.
#include <cstring>

#include "fuzz_support.hpp"
#include "input/model_readers.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // A list line with ".." could leave the project folder and name any file of the machine (a
    // device that never ends): that is the user's choice, not the reader's.
    if (memmem(data, size, "..", 2) != nullptr) return 0;
    return Exercise([&] {
        const std::string list = PutInput("input_VARNEK.inp", data, size);
        CAnalysisData analysis;
        analysis.clear(0);
        ReadFileList(analysis, list, HarnessFolder());
    });
}
