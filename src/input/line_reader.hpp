// The shared skeleton of the text readers, the number reader, and the two ways a reader stops.
#pragma once

#include <functional>
#include <string>
#include <vector>

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

// The failure path of an input reader: the message and a line end on standard output, a wait
// for one character on standard input, exit status 0.
[[noreturn]] void FailReading(const std::string& message);

// Input the formats leave undefined (an index beyond a list, a short record): a message on
// standard error naming the file, the line and the fault, exit status 2.
[[noreturn]] void StopOnBadInput(const std::string& path, int lineNumber, const std::string& fault);

// A number truncated toward zero to an int, as a count or a code is read; values beyond the
// int range (and NaN) are clamped so that the caller's checks see them as out of range.
int TruncateToInt(double value);
