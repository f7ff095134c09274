#include "freefield/free_field_files.hpp"

#include <cstdio>
#include <memory>

#include "base/run_stop.hpp"

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

File OpenForWriting(const std::string& path) {
    File file(std::fopen(path.c_str(), "w"));
    if (!file) StopOnUnopenedFile(path);
    return file;
}

// Closes the file and ends the run when some write failed (a full disk).
void Finish(File file, const std::string& path) {
    const bool failed = std::ferror(file.get()) != 0;
    if (std::fclose(file.release()) != 0 || failed)
        StopOnOutputFault("cannot write " + path + " to the end");
}

}  // namespace

std::string ExactText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

int WriteColumnMotionFiles(const std::string& folder, const std::string& prefix,
                           const SideColumn& column, const ColumnResponse& response) {
    for (size_t k = 0; k < column.nodes.size(); ++k) {
        const std::string path = folder + prefix + std::to_string(k) + ".dat";
        File file = OpenForWriting(path);
        std::fprintf(file.get(), "%d\n", column.nodes[k]);
        for (const Complex& value : response.motion[k])
            std::fprintf(file.get(), "%.17g %.17g\n", value.real(), value.imag());
        Finish(std::move(file), path);
    }
    return static_cast<int>(column.nodes.size());
}

void WriteMatrixFile(const std::string& path, const std::vector<DofEntry>& entries) {
    File file = OpenForWriting(path);
    for (const DofEntry& e : entries)
        std::fprintf(file.get(), "%d %d %.17g %.17g\n", e.row, e.column, e.value.real(),
                     e.value.imag());
    Finish(std::move(file), path);
}
