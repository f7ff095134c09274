#include "input/line_reader.hpp"

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "base/platform.hpp"
#include "base/run_stop.hpp"

void StripCarriageReturn(std::string& line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
}

bool ReadAllLines(const std::string& path, const LineHandler& handler) {
    // A folder is no file: a list line that leaves only the folder prefix fails to open.
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) return false;
    std::ifstream in(path);
    if (!in) return false;
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        StripCarriageReturn(line);
        handler(line, number);
    }
    return true;
}

bool ReadDataLines(const std::string& path, const std::string& failureMessage,
                   const LineHandler& handler) {
    if (path.empty()) return false;
    const bool opened = ReadAllLines(path, [&](const std::string& line, int number) {
        if (line.size() >= 2 && line[0] == '/' && line[1] == '/') return;
        if (!line.empty() && line[0] == '\n') return;
        handler(line, number);
    });
    if (!opened) StopOnUnreadableInput(failureMessage);
    return true;
}

NumberList ReadNumbers(const std::string& path, const std::string& failureMessage) {
    NumberList list;
    ReadDataLines(path, failureMessage, [&](const std::string& line, int number) {
        double value = 0.0;
        if (std::sscanf(line.c_str(), "%lf", &value) == 1) {
            list.values.push_back(value);
            list.lines.push_back(number);
        }
    });
    return list;
}

int TruncateToInt(double value) {
    if (!(value == value)) return 0;
    if (value >= 2147483647.0) return 2147483647;
    if (value <= -2147483648.0) return -2147483647 - 1;
    return static_cast<int>(value);
}
