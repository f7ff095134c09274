#include "fuzz_support.hpp"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "base/platform.hpp"
#include "input/model_readers.hpp"

namespace fs = std::filesystem;

namespace {

// A model that would need more than this stops as bad input, as on a small machine: the runs
// stay quick, and far below the fuzzer's memory limit.
constexpr uint64_t kHarnessMemoryBudget = 16u << 20;

// The mixed mesh of the tests (a 4-node, an 8-node and a 6-node element), with a third material
// of the hyperbolic (GHE) model for the triangle, so that the self-weight stresses set a strength.
const char* const kFixedFiles[][2] = {
    {"c.dat", "10\n0\n0.01\n0.05\n0.65\n3\n2\n"},
    {"wave.csv",
     "w,0.01,1\n0,-20\n0.01,-10\n0.02,0\n0.03,10\n0.04,20\n0.05,-20\n0.06,-10\n0.07,0\n0.08,10\n"
     "0.09,20\n0.1,-20\n0.11,-10\n0.12,0\n0.13,10\n0.14,20\n0.15,-20\n0.16,-10\n0.17,0\n0.18,10\n"
     "0.19,20\n0.2,-20\n"},
    {"nodes.dat",
     "0 0\n1 0\n1 1\n0 1\n2 0\n2 1\n1.5 0\n2 0.5\n1.5 1\n1 0.5\n1.5 1.5\n1.25 1.25\n1.75 1.25\n"},
    {"elements.dat", "0 4 1 0 1 2 3\n1 8 1 1 4 5 2 6 7 8 9\n2 6 1 5 10 2 11 8 12\n"},
    {"mat.dat",
     "3\n5\n0.0019\n0.0019\n0\n80\n0.3\n0.03\n"
     "2\n0.0017\n0.0017\n0\n30\n0.4\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n0.2\n2\n5\n15\n"
     "4\n0.0018\n0.0018\n0\n40\n0.35\n0.02\n30\n1\n1\n1\n1\n1\n1\n1\n1\n0.25\n1\n"},
    {"bc.dat", "0 2 0 0\n1 2 0 0\n4 2 0 0\n6 2 0 0\n"},
};

[[noreturn]] void ThrowStop(ExitStatus status) {
    throw FuzzStop{status};
}

std::string MakeHarnessFolder() {
    const char* base = std::getenv("TMPDIR");
    fs::path root = base != nullptr && *base != '\0' ? fs::path(base) : fs::path("/dev/shm");
    std::error_code ec;
    if (!fs::is_directory(root, ec)) root = fs::temp_directory_path();
    const fs::path folder = root / ("varnek-fuzz-" + std::to_string(getpid()));
    fs::create_directories(folder);
    return folder.string() + "/";
}

void RemoveHarnessFolder() {
    std::error_code ec;
    fs::remove_all(HarnessFolder(), ec);
}

void WriteFile(const std::string& path, const char* data, size_t size) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc).write(data, static_cast<long>(size));
}

}  // namespace

const std::string& HarnessFolder() {
    static const std::string folder = MakeHarnessFolder();
    return folder;
}

void PrepareHarness() {
    static const bool prepared = [] {
        SetStopHandler(&ThrowStop);
        SetMemoryBudgetBytes(kHarnessMemoryBudget);
        // The wait for a key after an unreadable file meets the end of input at once.
        if (std::freopen("/dev/null", "r", stdin) == nullptr) std::abort();
        for (const auto& file : kFixedFiles) {
            const std::string text = file[1];
            WriteFile(HarnessFolder() + file[0], text.data(), text.size());
        }
        std::atexit(RemoveHarnessFolder);
        return true;
    }();
    (void)prepared;
}

ModelFiles FixedModelFiles() {
    const std::string& f = HarnessFolder();
    return {f + "c.dat",        f + "wave.csv", f + "nodes.dat",
            f + "elements.dat", f + "mat.dat",  f + "bc.dat"};
}

std::string PutInput(const std::string& name, const uint8_t* data, size_t size) {
    const std::string path = HarnessFolder() + name;
    WriteFile(path, reinterpret_cast<const char*>(data), size);
    return path;
}

void ReadModel(CAnalysisData& analysis, const ModelFiles& files) {
    analysis.clear(0);
    ReadConstants(analysis, files.constants);
    ReadSeismic(analysis, files.wave);
    ReadNodes(analysis, files.nodes);
    ReadElements(analysis, files.elements, files.materials);
    ReadBoundary(analysis, analysis.boundaryConds, files.boundary);
    AddIdleNodeBoundaries(analysis, analysis.boundaryConds);
}

void NumberEquationsForHarness(CAnalysisData& analysis) {
    const size_t dofCount = 2 * analysis.nodes.size();
    analysis.equationMap.assign(dofCount, 0);
    for (const auto& condition : analysis.boundaryConds) {
        const size_t node = static_cast<size_t>(condition->node);
        if (2 * node + 1 < dofCount) analysis.equationMap[2 * node] = analysis.equationMap[2 * node + 1] = -1;
    }
    int32_t next = 0;
    for (int32_t& equation : analysis.equationMap)
        if (equation == 0) equation = next++;
    analysis.freeDofCount = next;
}
