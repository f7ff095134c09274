#include "base/platform.hpp"

#include <omp.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

int ProcessorCount() {
    return omp_get_num_procs();
}

std::optional<uint64_t> FileSize(const std::string& path) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    if (ec) return std::nullopt;
    return static_cast<uint64_t>(size);
}

namespace {
int gSavedNice = 0;
bool gRaised = false;
}  // namespace

void RaiseProcessPriority() {
    errno = 0;
    const int current = getpriority(PRIO_PROCESS, 0);
    if (errno != 0) return;
    if (setpriority(PRIO_PROCESS, 0, current - 5) == 0) {
        gSavedNice = current;
        gRaised = true;
    }
}

void RestoreProcessPriority() {
    if (!gRaised) return;
    setpriority(PRIO_PROCESS, 0, gSavedNice);
    gRaised = false;
}

int CreateFolder(const std::string& path) {
    std::error_code ec;
    std::filesystem::create_directory(path, ec);
    std::error_code kind;
    if (std::filesystem::is_directory(path, kind)) return 0;
    if (std::filesystem::exists(path, kind)) return ENOTDIR;
    return ec ? ec.value() : ENOENT;
}

void RemoveFile(const std::string& path) {
    std::remove(path.c_str());
}
