#include "results/work_file_reader.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "base/run_stop.hpp"

WorkFileReader::WorkFileReader(const std::string& path) : fd_(open(path.c_str(), O_RDONLY)) {}

WorkFileReader::~WorkFileReader() {
    if (fd_ >= 0) close(fd_);
}

uint64_t WorkFileReader::Size() const {
    struct stat info {};
    if (fd_ < 0 || fstat(fd_, &info) != 0) return 0;
    return static_cast<uint64_t>(info.st_size);
}

void WorkFileReader::ReadAt(uint64_t offset, void* out, size_t size) const {
    char* target = static_cast<char*>(out);
    size_t done = 0;
    while (fd_ >= 0 && done < size) {
        const ssize_t n = pread(fd_, target + done, size - done, static_cast<off_t>(offset + done));
        if (n <= 0) break;
        done += static_cast<size_t>(n);
    }
    if (done < size) std::memset(target + done, 0, size - done);
}

std::optional<std::vector<float>> LoadFloatWords(const std::string& path) {
    const WorkFileReader file(path);
    if (!file.IsOpen()) return std::nullopt;
    return file.ReadArray<float>(0, static_cast<size_t>(file.Size() / sizeof(float)));
}

std::vector<float> LoadFloatWordsOrStop(const std::string& path) {
    std::optional<std::vector<float>> words = LoadFloatWords(path);
    if (!words) StopOnUnopenedFile(path);
    return std::move(*words);
}

void RequireOpen(const WorkFileReader& reader, const std::string& path) {
    if (!reader.IsOpen()) StopOnUnopenedFile(path);
}

WorkRecord RecordAt(const std::vector<float>& data, uint64_t position) {
    WorkRecord record{};
    for (uint64_t i = 0; i < record.size(); ++i)
        if (position + i < data.size()) record[i] = data[position + i];
    return record;
}
