#include "base/run_stop.hpp"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <set>

#include "base/console.hpp"

namespace {

std::atomic<StopHandler> gStopHandler{nullptr};

// The files a stop removes. A timed lock, so that a stop never waits long on a thread that is
// registering a name at that moment.
std::timed_mutex gRemovalLock;
std::set<std::string>& FilesToRemove() {
    static std::set<std::string>* files = new std::set<std::string>;  // never destroyed
    return *files;
}

void RemoveRegisteredFiles() {
    std::unique_lock<std::timed_mutex> lock(gRemovalLock, std::defer_lock);
    if (!lock.try_lock_for(std::chrono::seconds(1))) return;
    for (const std::string& path : FilesToRemove()) unlink(path.c_str());
}

// Of several threads whose output fails at the same moment, the first reports and ends the run;
// the others wait here until the process is gone.
void ClaimOutputReport() {
    static std::mutex reporting;
    reporting.lock();
}

std::string Reason(int error) {
    return std::strerror(error != 0 ? error : EIO);
}

[[noreturn]] void StopOnOutputError(const std::string& what, const std::string& name, int error) {
    ClaimOutputReport();
    console::ErrLine("Error: cannot " + what + "(" + name + "): " + Reason(error));
    StopRun(ExitStatus::kOutputFailure);
}

}  // namespace

void RemoveOnStop(const std::string& path) {
    // Kept with the working directory of the moment, which is where the file is made.
    std::error_code ec;
    std::filesystem::path absolute = std::filesystem::absolute(path, ec);
    std::lock_guard<std::timed_mutex> lock(gRemovalLock);
    FilesToRemove().insert(ec ? path : absolute.string());
}

void SetStopHandler(StopHandler handler) {
    gStopHandler.store(handler);
}

void StopRun(ExitStatus status) {
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
    RemoveRegisteredFiles();
    if (StopHandler handler = gStopHandler.load()) handler(status);
    _exit(static_cast<int>(status));
}

void WaitForOneCharacter() {
    (void)std::getchar();
}

void StopOnUnreadableInput(const std::string& message) {
    console::OutLine(message);
    WaitForOneCharacter();
    StopRun(ExitStatus::kUnreadableInput);
}

void StopOnBadInput(const std::string& path, int lineNumber, const std::string& fault) {
    console::ErrLine(path + ":" + std::to_string(lineNumber) + ": " + fault);
    StopRun(ExitStatus::kBadInput);
}

void StopOnBadModel(const std::string& fault) {
    console::ErrLine(fault);
    StopRun(ExitStatus::kBadInput);
}

void StopOnBadModel(const std::vector<std::string>& faults) {
    for (size_t i = 0; i < faults.size() && i < kShownFaults; ++i) console::ErrLine(faults[i]);
    if (faults.size() > kShownFaults) {
        const size_t more = faults.size() - kShownFaults;
        console::ErrLine("and " + std::to_string(more) +
                         (more == 1 ? " more fault" : " more faults"));
    }
    StopRun(ExitStatus::kBadInput);
}

void StopOnUnopenedFile(const std::string& name) {
    console::OutLine("Error: cannot open file(" + name + ")");
    StopRun(ExitStatus::kOutputFailure);
}

void StopOnOutputFault(const std::string& text) {
    console::ErrLine(text);
    StopRun(ExitStatus::kOutputFailure);
}

void StopOnFileNotCreated(const std::string& name, int error) {
    StopOnOutputError("create file", name, error);
}

void StopOnFileNotWritten(const std::string& name, int error) {
    StopOnOutputError("write file", name, error);
}

void StopOnFolderNotCreated(const std::string& name, int error) {
    StopOnOutputError("create folder", name, error);
}

void StopOnSolverFailure(const std::string& text) {
    static std::mutex reporting;
    reporting.lock();
    console::Out(text);
    StopRun(ExitStatus::kSolverFailure);
}
