// Reading the binary work files back: random access by byte position, and whole files of f32
// words. Whatever lies beyond a file's end reads as zero. The run wrote and checked every work
// file before any is read, so a file that cannot be opened is a fault of the surroundings (one
// removed meanwhile): the readers of the stages stop the run there rather than read zeros.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class WorkFileReader {
  public:
    explicit WorkFileReader(const std::string& path);
    ~WorkFileReader();
    WorkFileReader(const WorkFileReader&) = delete;
    WorkFileReader& operator=(const WorkFileReader&) = delete;

    bool IsOpen() const { return fd_ >= 0; }
    // Length of the file in bytes (0 when it is not open).
    uint64_t Size() const;
    // Fills `size` bytes from byte `offset`; the part beyond the end of the file is zero.
    // Safe to call from several threads at once.
    void ReadAt(uint64_t offset, void* out, size_t size) const;

    // `count` values of type T from byte `offset`.
    template <typename T>
    std::vector<T> ReadArray(uint64_t offset, size_t count) const {
        std::vector<T> values(count);
        ReadAt(offset, values.data(), count * sizeof(T));
        return values;
    }

  private:
    int fd_ = -1;
};

// A whole file as f32 words (a trailing part of a word is dropped); nothing when it cannot be
// opened.
std::optional<std::vector<float>> LoadFloatWords(const std::string& path);
// The same; a file that cannot be opened ends the run through StopOnUnopenedFile.
std::vector<float> LoadFloatWordsOrStop(const std::string& path);
// Ends the run through StopOnUnopenedFile unless the reader's file is open.
void RequireOpen(const WorkFileReader& reader, const std::string& path);

// The six values of a stress or strain record at a float position; values beyond the data are 0.
using WorkRecord = std::array<float, 6>;
WorkRecord RecordAt(const std::vector<float>& data, uint64_t position);
