#include "base/platform.hpp"

#include <omp.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>

int ProcessorCount() {
    return omp_get_num_procs();
}

namespace {
std::atomic<uint64_t> gMemoryBudget{0};  // 0: the machine's memory
}  // namespace

uint64_t MemoryBudgetBytes() {
    if (const uint64_t set = gMemoryBudget.load(); set != 0) return set;
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGE_SIZE);
    if (pages <= 0 || pageSize <= 0) return UINT64_MAX;  // unknown: no bound
    return static_cast<uint64_t>(pages) * static_cast<uint64_t>(pageSize);
}

void SetMemoryBudgetBytes(uint64_t bytes) {
    gMemoryBudget.store(bytes);
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

int CreateFolder(const std::string& path) {
    std::error_code made;
    std::filesystem::create_directory(path, made);
    std::error_code found;
    const std::filesystem::file_status status = std::filesystem::status(path, found);
    if (!found && std::filesystem::is_directory(status)) return 0;
    if (!found) return ENOTDIR;  // a file of that name is in the way
    // A name with a trailing separator over a file reads as ENOTDIR here.
    if (found.value() != ENOENT) return found.value();
    return made ? made.value() : ENOENT;
}

void RemoveFile(const std::string& path) {
    std::remove(path.c_str());
}
