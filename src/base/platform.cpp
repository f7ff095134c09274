#include "base/platform.hpp"

#include <omp.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <iostream>

int ProcessorCount() {
    return omp_get_num_procs();
}

int LauncherProcessorCount() {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    if (sched_getaffinity(getppid(), sizeof processors, &processors) != 0) return ProcessorCount();
    return CPU_COUNT(&processors);
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

void CreateFolder(const std::string& path) {
    std::error_code ec;
    std::filesystem::create_directory(path, ec);
}

void RemoveFile(const std::string& path) {
    std::remove(path.c_str());
}
