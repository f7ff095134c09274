// The free-field program: the command line, the run files, the stages and the console.
#pragma once

#include <string>
#include <vector>

struct FreeFieldOptions {
    bool help = false;
    int treatment = -1;  // the side treatment whose files to write; -1: the project's own
};

// Reads the arguments after the program name: "--help" (or "-h"), "--treatment 0|1". False with
// a fault text for anything else.
bool ParseFreeFieldOptions(const std::vector<std::string>& arguments, FreeFieldOptions& options,
                           std::string& fault);

// The text of "--help".
std::string FreeFieldUsage();

// The whole program without the process around it; returns the status of main. Like the
// dynamic analysis it works on the project that "config_VARNEK.txt" of the working directory
// names.
int RunFreeFieldProgram(const std::vector<std::string>& arguments);
