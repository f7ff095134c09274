// The command line of the self-weight analysis.
#pragma once

#include <optional>
#include <string>
#include <vector>

enum class SelfWeightMethod {
    kGravity,  // elastic analysis of the section under its own weight
    kK0,       // geostatic stresses of level ground
};

struct SelfWeightOptions {
    SelfWeightMethod method = SelfWeightMethod::kGravity;
    bool verbose = false;
    bool help = false;
};

// The options of the arguments (the program name left out): "--method gravity|k0" (also
// "--method=..."), "--verbose", "--help" or "-h". Nothing when an argument is not one of them,
// with the reason in fault.
std::optional<SelfWeightOptions> ParseOptions(const std::vector<std::string>& arguments,
                                              std::string& fault);

// The text of --help.
const char* UsageText();
