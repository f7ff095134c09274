// The shared skeleton of the text readers and the number reader. A reader stops through the
// stops of the run (base/run_stop.hpp), which this header brings in.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/run_stop.hpp"

// Called with each data line (trailing CR removed) and its 1-based line number in the file.
using LineHandler = std::function<void(const std::string& line, int lineNumber)>;

// Reads the file at path line by line and hands each data line to the handler. An empty path
// does nothing and returns false. A file that cannot be opened takes the failure path with
// failureMessage. Lines beginning with "//" are comments; every other line, an empty one
// included, is a data line.
bool ReadDataLines(const std::string& path, const std::string& failureMessage,
                   const LineHandler& handler);

// Reads a whole file line by line with no comment rule (trailing CR removed). Returns false
// when the file cannot be opened.
bool ReadAllLines(const std::string& path, const LineHandler& handler);

// The numbers of a number file: the first number of each data line that starts with one, and
// the line it stood on.
struct NumberList {
    std::vector<double> values;
    std::vector<int> lines;
};
// An empty path gives an empty list.
NumberList ReadNumbers(const std::string& path, const std::string& failureMessage);

// Removes one trailing carriage return.
void StripCarriageReturn(std::string& line);

// A number truncated toward zero to an int, as a count or a code is read; values beyond the
// int range (and NaN) are clamped so that the caller's checks see them as out of range.
int TruncateToInt(double value);
