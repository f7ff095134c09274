#include "response/work_file_writer.hpp"

#include "base/run_stop.hpp"

namespace {
// A work file is registered before it exists, so that no stop can leave it behind.
const std::string& RegisteredForRemoval(const std::string& path) {
    RemoveOnStop(path);
    return path;
}
}  // namespace

// The writer keeps its own buffer; the stream's would only copy the bytes once more.
WorkFileWriter::WorkFileWriter(const std::string& path, size_t bufferBytes)
    : file_(RegisteredForRemoval(path), "wb", OutputFile::Buffering::kNone),
      buffer_(bufferBytes > 0 ? bufferBytes : kDefaultBufferBytes) {}

WorkFileWriter::~WorkFileWriter() {
    Close();
}

void WorkFileWriter::WriteBytes(const void* data, size_t bytes) {
    file_.Write(data, bytes);
}

void WorkFileWriter::Flush() {
    WriteBytes(buffer_.data(), used_);
    used_ = 0;
}

void WorkFileWriter::Close() {
    Flush();
    file_.Close();
}
