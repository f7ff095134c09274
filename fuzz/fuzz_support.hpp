// The shared harness of the fuzz targets: each target reads a small fixed model through the
// program's own readers, with one file replaced by the fuzzer's input. The files lie in a folder
// in memory (TMPDIR, else /dev/shm). A reader that stops the run (a missing file, bad input)
// comes back here as a FuzzStop instead of ending the process, the wait for a key reads the end
// of /dev/null, and the memory a model may plan for is bounded, so that a model too large for
// the machine stops as it does on a small machine instead of exhausting the fuzzer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/run_stop.hpp"
#include "model/analysis_data.hpp"

struct FuzzStop {
    ExitStatus status;
};

// The model files as the readers take them; each names a fixed file of the harness folder until
// a target points it at its input.
struct ModelFiles {
    std::string constants, wave, nodes, elements, materials, boundary;
};

// Sets the harness up once (stop handler, standard input, memory budget, the fixed files).
void PrepareHarness();

// The folder of the fixed files, with its trailing separator.
const std::string& HarnessFolder();

// The fixed files of the model, by their full paths.
ModelFiles FixedModelFiles();

// Writes the input into the harness folder under name (a relative path) and gives its path.
std::string PutInput(const std::string& name, const uint8_t* data, size_t size);

// Reads the model in the order of the file list: constants, wave, nodes, elements with their
// materials, boundary conditions, idle nodes.
void ReadModel(CAnalysisData& analysis, const ModelFiles& files);

// Numbers the equations as the analysis does in outline: both directions of a node named by a
// boundary condition fixed, every other one an equation.
void NumberEquationsForHarness(CAnalysisData& analysis);

// Runs body; a stop of the run ends it quietly.
template <typename Body>
int Exercise(const Body& body) {
    PrepareHarness();
    try {
        body();
    } catch (const FuzzStop&) {
    }
    return 0;
}
