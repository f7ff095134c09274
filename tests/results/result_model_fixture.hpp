// Test support for the result writers: a small soil model in memory and work files written
// straight into a scratch working directory.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "run/analysis_data.hpp"
#include "support/project_fixture.hpp"

// Moves the process into a scratch folder for the test's life: the work files lie in the
// working directory.
class ScratchWorkingDirectory {
  public:
    ScratchWorkingDirectory();
    ~ScratchWorkingDirectory();
    const ProjectFolder& Folder() const { return folder_; }
    std::string Read(const std::string& relative) const { return folder_.Read(relative); }
    bool Exists(const std::string& relative) const { return folder_.Exists(relative); }

  private:
    ProjectFolder folder_;
    std::filesystem::path previous_;
};

// A row of `columns` 4-node elements, one layer of 1 m, nodes on two rows (bottom row first),
// one elastic material whose G/G0 is 0.8, a wave of `steps` samples at 0.01 s. Spectra and the
// wave spectrum are all zero, so the syntheses would give zero motion and zero stress.
CAnalysisData SmallModel(int columns, int steps);

// Writes values to a binary file as they lie in memory.
template <typename T>
void WriteWords(const std::string& path, const std::vector<T>& values) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T));
}

// Stress or strain records of `elements` elements of `points` points and `steps` steps, in the
// order the syntheses write them; value i of a record is code(element, point, step, i).
using RecordCode = std::function<float(int element, int point, int step, int i)>;
std::vector<float> Records(int elements, int points, int steps, const RecordCode& code);

// A code that tells every value apart: 1000 e + 100 g + 10 t + i.
float DistinctCode(int element, int point, int step, int i);

// A C format applied to values, the reference the writers must match.
template <typename... Args>
std::string Printf(const char* format, Args... args) {
    char text[512];
    std::snprintf(text, sizeof text, format, args...);
    return text;
}

// What writer(file) writes to a scratch file.
std::string TextWrittenBy(const std::function<void(std::FILE*)>& writer);

// The line of a text that begins with `prefix` at a line start, without its line end; empty
// when none does.
std::string LineStartingWith(const std::string& text, const std::string& prefix);
// The lines after the line `banner` up to the next line that starts with "----".
std::vector<std::string> BlockLines(const std::string& text, const std::string& banner);

// Element number (the first number of a line) -> how many of the lines carry it.
std::map<int, int> LinesPerElement(const std::vector<std::string>& lines);
