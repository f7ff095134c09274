// Fast scanning of the free-field analysis' text files: a whole file in one buffer, walked line
// by line, with numbers read as the C library's formatted scan reads them ("%d", "%lf").
#pragma once

#include <string>
#include <string_view>

// Reads the whole file into text. False when it cannot be opened or read (a folder included).
bool ReadWholeFile(const std::string& path, std::string& text);

// The lines of a buffer, split at '\n'. A last line without a line end counts; a line end at
// the very end of the buffer opens no further line. A trailing carriage return stays: the
// scanner takes it as blank space.
class LineCursor {
  public:
    explicit LineCursor(std::string_view text) : rest_(text) {}

    // Gives the next line and its 1-based number; false at the end of the buffer.
    bool Next(std::string_view& line);
    int LineNumber() const { return number_; }

  private:
    std::string_view rest_;
    int number_ = 0;
};

// The fields of one line, read in turn like a chain of conversions of one formatted scan: each
// field skips leading blank space; the first field that fails leaves its variable as it was and
// every later field fails too.
class FieldScanner {
  public:
    explicit FieldScanner(std::string_view line)
        : pos_(line.data()), end_(line.data() + line.size()) {}

    // "%d": an optional sign and decimal digits. A value beyond the int range is clamped.
    bool Int(int& value);
    // "%lf": a decimal or hexadecimal number, an infinity or a NaN.
    bool Double(double& value);

  private:
    bool SkipBlank();

    const char* pos_;
    const char* end_;
    bool failed_ = false;
};
