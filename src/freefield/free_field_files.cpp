#include "freefield/free_field_files.hpp"

#include <charconv>
#include <cstdio>

#include "base/run_stop.hpp"

namespace {

// The text of a whole file, built in memory: numbers as "%d" and "%.17g" write them (enough
// digits to read back the same double), by std::to_chars, which gives those very characters
// several times faster.
class FileText {
  public:
    void Int(int value) { Append(std::to_chars(buffer_, buffer_ + sizeof buffer_, value)); }
    void Double(double value) {
        Append(std::to_chars(buffer_, buffer_ + sizeof buffer_, value,
                             std::chars_format::general, 17));
    }
    void Char(char c) { text_ += c; }
    void Reserve(size_t bytes) { text_.reserve(bytes); }

    // Writes the text to path; a file that cannot be opened or written ends the run.
    void Write(const std::string& path) const {
        std::FILE* file = std::fopen(path.c_str(), "wb");
        if (file == nullptr) StopOnUnopenedFile(path);
        const bool written = std::fwrite(text_.data(), 1, text_.size(), file) == text_.size();
        if (std::fclose(file) != 0 || !written)
            StopOnOutputFault("cannot write " + path + " to the end");
    }

  private:
    void Append(std::to_chars_result result) { text_.append(buffer_, result.ptr); }

    std::string text_;
    char buffer_[32];
};

}  // namespace

int WriteColumnMotionFiles(const std::string& folder, const std::string& prefix,
                           const SideColumn& column, const ColumnResponse& response) {
    for (size_t k = 0; k < column.nodes.size(); ++k) {
        FileText text;
        text.Int(column.nodes[k]);
        text.Char('\n');
        for (const Complex& value : response.motion[k]) {
            text.Double(value.real());
            text.Char(' ');
            text.Double(value.imag());
            text.Char('\n');
        }
        text.Write(folder + prefix + std::to_string(k) + ".dat");
    }
    return static_cast<int>(column.nodes.size());
}

void WriteMatrixFile(const std::string& path, const std::vector<DofEntry>& entries) {
    FileText text;
    text.Reserve(56 * entries.size());
    for (const DofEntry& e : entries) {
        text.Int(e.row);
        text.Char(' ');
        text.Int(e.column);
        text.Char(' ');
        text.Double(e.value.real());
        text.Char(' ');
        text.Double(e.value.imag());
        text.Char('\n');
    }
    text.Write(path);
}
