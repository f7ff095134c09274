#include "response/work_file_writer.hpp"

WorkFileWriter::WorkFileWriter(const std::string& path, size_t bufferBytes)
    : buffer_(bufferBytes > 0 ? bufferBytes : kDefaultBufferBytes) {
    file_ = std::fopen(path.c_str(), "wb");
    good_ = file_ != nullptr;
    // The writer keeps its own buffer; the stream's would only copy the bytes once more.
    if (file_) std::setvbuf(file_, nullptr, _IONBF, 0);
}

WorkFileWriter::~WorkFileWriter() {
    Close();
}

void WorkFileWriter::WriteBytes(const void* data, size_t bytes) {
    if (!file_ || !good_ || bytes == 0) return;
    if (std::fwrite(data, 1, bytes, file_) != bytes) good_ = false;
}

void WorkFileWriter::Flush() {
    WriteBytes(buffer_.data(), used_);
    used_ = 0;
}

void WorkFileWriter::Close() {
    if (!file_) return;
    Flush();
    if (std::fclose(file_) != 0) good_ = false;
    file_ = nullptr;
}
