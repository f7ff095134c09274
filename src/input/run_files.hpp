// The run files of the working directory and the project folder: "config_VARNEK.txt", whose
// first line is the project folder prefix, and "Flag_VARNEK.inp", the run flags.
#pragma once

#include <cstdint>
#include <string>

struct RunFlags {
    uint32_t formatDate = 0;
    uint32_t outputLimit = 500;  // the file keeps its place; the analysis reads nothing from it
    bool equivalentLinear = false;
    // Older flag files have no such field; false selects the per-step output path.
    bool singleStepOutput = false;
};

// Reads the project folder prefix from the first line of the configuration file and shows it;
// empty (and nothing shown) when the file cannot be opened.
std::string ReadProjectFolder(const std::string& configPath);

// The flags of the flag file at flagPath, starting from flags: a flag is the number 0 or 1, and
// a field that cannot be read leaves it and every field behind it at its starting value. The
// single-step flag is read only for format dates after 20150122.
RunFlags ReadRunFlags(const std::string& flagPath, RunFlags flags);
