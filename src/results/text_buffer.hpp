// A growing text of formatted numbers, for the result files: attached to a C file it is written
// out whenever its room fills, so that a file of any size costs one fixed buffer.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "base/output_file.hpp"

class TextBuffer {
  public:
    // Without a file the text stays in memory (View); with one it goes there on Flush, whenever
    // the buffer fills, and at the end of the buffer's life. A write that fails ends the run.
    explicit TextBuffer(OutputFile* file = nullptr, size_t capacity = size_t{1} << 20);
    ~TextBuffer() { Flush(); }
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    TextBuffer& Text(std::string_view text);
    TextBuffer& Char(char c);
    TextBuffer& Integer(int64_t value);              // "%d"
    TextBuffer& Fixed(double value, int precision);  // "%.<precision>f"
    TextBuffer& Scientific(double value);            // "%le"

    // Writes what is pending to the file, if there is one.
    void Flush();
    // The pending text (all of it when there is no file).
    std::string_view View() const { return {data_.get(), used_}; }

  private:
    // Room for n more characters: flushes first or grows.
    char* Reserve(size_t n);

    OutputFile* file_;
    std::unique_ptr<char[]> data_;  // left uninitialised: every byte is written before use
    size_t capacity_;
    size_t used_ = 0;
};
