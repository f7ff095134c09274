#include "input/run_files.hpp"

#include <filesystem>
#include <fstream>

#include "base/console.hpp"
#include "input/line_reader.hpp"

namespace {
// A flag is the number 0 or 1; anything else fails the stream and leaves the flag unchanged.
std::istream& ExtractFlag(std::istream& in, bool& flag) {
    long value = 0;
    if (!(in >> value)) return in;
    if (value == 0 || value == 1)
        flag = value == 1;
    else
        in.setstate(std::ios::failbit);
    return in;
}
}  // namespace

RunFlags ReadRunFlags(const std::string& flagPath, RunFlags flags) {
    // Stream extraction as it stands: a failed extraction leaves the local (and every field
    // behind it) at its starting value.
    std::ifstream in(flagPath);
    uint32_t date = 0;
    uint32_t limit = flags.outputLimit;
    bool linear = false;
    if (in >> date >> limit) ExtractFlag(in, linear);
    flags.formatDate = date;
    flags.outputLimit = limit;
    flags.equivalentLinear = linear;
    if (flags.formatDate > 20150122) {
        bool single = false;
        ExtractFlag(in, single);
        flags.singleStepOutput = single;
    }
    return flags;
}

std::string ReadProjectFolder(const std::string& configPath) {
    std::string folder;
    // A folder of that name is no configuration file: it opens as a stream here but not for
    // reading text, so it is passed over in silence like a missing file.
    std::error_code ec;
    if (std::filesystem::is_directory(configPath, ec)) return folder;
    std::ifstream in(configPath);
    if (in.good()) {
        std::getline(in, folder);
        StripCarriageReturn(folder);
        console::OutLine(folder);
    }
    return folder;
}
