// A file the run writes (a result model, a time history, a work file, a marker): every open,
// write and close is checked, and a failure ends the run with status 1 and a message that names
// the file and the system's reason. Nothing fails in silence: a full disk shows at the write, the
// flush or the close that meets it.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>

// How long an open that fails is tried again before the run stops: another program (a viewer, a
// virus scanner) may hold a result file for a moment, but a file that can never be opened must
// not hold the run for ever.
inline constexpr std::chrono::milliseconds kOpenRetryWindow{2000};

// Opens path with the C mode given, trying again every few milliseconds for up to window.
// Returns the stream, or nullptr with the system's error number of the last try in error.
std::FILE* OpenWithRetry(const std::string& path, const char* mode,
                         std::chrono::milliseconds window, int& error);

class OutputFile {
  public:
    enum class Buffering {
        kStream,  // the C stream's own buffer
        kNone,    // the caller buffers: each Write goes to the system at once
    };

    // Opens path with mode ("w", "wb", "ab"); a file that does not open within the retry window
    // stops the run (StopOnFileNotCreated).
    OutputFile(std::string path, const char* mode, Buffering buffering = Buffering::kStream);
    // Closes the file as Close does, if that has not been done.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // Writes bytes; a short write stops the run (StopOnFileNotWritten).
    void Write(const void* data, size_t bytes);
    // Flushes and closes; a failure of either stops the run. Nothing may be written afterwards.
    void Close();

    const std::string& Path() const { return path_; }

  private:
    std::string path_;
    std::FILE* file_ = nullptr;
};
