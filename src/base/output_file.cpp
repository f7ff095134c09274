#include "base/output_file.hpp"

#include <algorithm>
#include <cerrno>
#include <thread>

#include "base/run_stop.hpp"

namespace {
// errno after a failed call, or EIO where the library left none.
int LastError() {
    return errno != 0 ? errno : EIO;
}
}  // namespace

std::FILE* OpenWithRetry(const std::string& path, const char* mode,
                         std::chrono::milliseconds window, int& error) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + window;
    std::chrono::milliseconds pause(5);
    for (;;) {
        errno = 0;
        if (std::FILE* file = std::fopen(path.c_str(), mode)) return file;
        error = LastError();
        const Clock::time_point now = Clock::now();
        if (now >= deadline) return nullptr;
        std::this_thread::sleep_for(
            std::min<Clock::duration>(pause, deadline - now));
        pause = std::min(pause * 2, std::chrono::milliseconds(200));
    }
}

OutputFile::OutputFile(std::string path, const char* mode, Buffering buffering)
    : path_(std::move(path)) {
    int error = 0;
    file_ = OpenWithRetry(path_, mode, kOpenRetryWindow, error);
    if (file_ == nullptr) StopOnFileNotCreated(path_, error);
    if (buffering == Buffering::kNone) std::setvbuf(file_, nullptr, _IONBF, 0);
}

OutputFile::~OutputFile() {
    Close();
}

void OutputFile::Write(const void* data, size_t bytes) {
    if (bytes == 0) return;
    errno = 0;
    if (file_ == nullptr || std::fwrite(data, 1, bytes, file_) != bytes)
        StopOnFileNotWritten(path_, file_ == nullptr ? EBADF : LastError());
}

void OutputFile::Close() {
    if (file_ == nullptr) return;
    std::FILE* file = file_;
    file_ = nullptr;
    errno = 0;
    const bool flushed = std::fflush(file) == 0;
    const int flushError = LastError();
    errno = 0;
    const bool closed = std::fclose(file) == 0;
    if (!flushed) StopOnFileNotWritten(path_, flushError);
    if (!closed) StopOnFileNotWritten(path_, LastError());
}
