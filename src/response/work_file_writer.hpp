// A binary work file written through a buffer of its own: values go out little-endian, one
// after the other, with no header. The file is created (or truncated) on construction and
// closed on destruction. A file that cannot be created, a write that fails (a full disk) or a
// failed close ends the run with status 1, naming the file; a run that stops removes every work
// file it has created.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "base/output_file.hpp"

class WorkFileWriter {
  public:
    static constexpr size_t kDefaultBufferBytes = 65536;

    explicit WorkFileWriter(const std::string& path, size_t bufferBytes = kDefaultBufferBytes);
    ~WorkFileWriter();
    WorkFileWriter(const WorkFileWriter&) = delete;
    WorkFileWriter& operator=(const WorkFileWriter&) = delete;

    // Appends count values of float or double, each little-endian.
    template <typename T>
    void PutValues(const T* values, size_t count) {
        static_assert(std::is_same_v<T, float> || std::is_same_v<T, double>);
        const size_t bytes = count * sizeof(T);
        if (used_ + bytes > buffer_.size()) {
            Flush();
            if (bytes > buffer_.size()) {
                WriteDirect(values, count);
                return;
            }
        }
        Store(buffer_.data() + used_, values, count);
        used_ += bytes;
    }

    template <typename T, size_t N>
    void Put(const std::array<T, N>& values) {
        PutValues(values.data(), N);
    }

    // Hands the buffered bytes to the file.
    void Flush();
    // Flushes and closes; nothing more is written afterwards.
    void Close();

  private:
    template <typename T>
    static void Store(unsigned char* out, const T* values, size_t count) {
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(out, values, count * sizeof(T));
        } else {
            for (size_t i = 0; i < count; ++i) {
                unsigned char bytes[sizeof(T)];
                std::memcpy(bytes, &values[i], sizeof(T));
                for (size_t b = 0; b < sizeof(T); ++b)
                    out[i * sizeof(T) + b] = bytes[sizeof(T) - 1 - b];
            }
        }
    }

    // A block larger than the buffer goes out in buffer-sized pieces (or at once where the host
    // is little-endian already).
    template <typename T>
    void WriteDirect(const T* values, size_t count) {
        if constexpr (std::endian::native == std::endian::little) {
            WriteBytes(values, count * sizeof(T));
        } else {
            const size_t perBuffer = buffer_.size() / sizeof(T);
            for (size_t done = 0; done < count; done += perBuffer) {
                const size_t n = std::min(perBuffer, count - done);
                Store(buffer_.data(), values + done, n);
                used_ = n * sizeof(T);
                Flush();
            }
        }
    }

    void WriteBytes(const void* data, size_t bytes);

    OutputFile file_;
    std::vector<unsigned char> buffer_;
    size_t used_ = 0;
};
