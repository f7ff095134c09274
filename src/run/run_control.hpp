// The run: the project folder, the run flags, and the order of the analysis' stages.
#pragma once

#include <cstdint>
#include <string>

#include "input/run_files.hpp"

class CRunControl {
  public:
    std::string inputPath;   // project folder + "input_VARNEK.inp"
    std::string folderPath;  // project folder prefix, with its own trailing separator
    uint32_t formatDate = 0;
    uint32_t outputLimit = 500;  // the flag file keeps its place; the analysis does not use it
    bool equivalentLinear = false;
    // Older flag files have no such field; false selects the per-step output path.
    bool singleStepOutput = false;

    CRunControl(std::string input, std::string folder)
        : inputPath(std::move(input)), folderPath(std::move(folder)) {}

    // Reads "Flag_VARNEK.inp" of the project folder into the flags; a missing or malformed
    // file leaves them as they are.
    void ReadFlags(const std::string& flagPath);

    // The whole analysis, from the model input to the result files.
    void runAnalysis();
};

// The whole program without the process around it: constant operators, run files, markers,
// the driver. Returns the status of main.
int RunProgram();
