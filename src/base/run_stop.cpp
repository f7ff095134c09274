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
#include "base/ranks.hpp"

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

std::string Reason(int error) {
    return std::strerror(error != 0 ? error : EIO);
}

[[noreturn]] void StopOnOutputError(const std::string& what, const std::string& name, int error) {
    StopRun(ExitStatus::kOutputFailure,
            {"Error: cannot " + what + "(" + name + "): " + Reason(error) + "\n",
             StopNotice::Stream::kErr, false});
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

void StopRun(ExitStatus status, const StopNotice& notice) {
    // A harness that drives the readers within its own process takes the stop back at the end;
    // otherwise only the first stop of a process reports, and another one met at the same time
    // waits here.
    const StopHandler handler = gStopHandler.load();
    static std::mutex stopping;
    if (handler == nullptr) {
        stopping.lock();
        ranks::TakeConsoleForStop();
    }
    if (notice.stream == StopNotice::Stream::kOut) {
        console::Out(notice.text);
        console::Flush();
    } else {
        // Standard output first, so that the two streams keep their order.
        console::Flush();
        std::fwrite(notice.text.data(), 1, notice.text.size(), stderr);
        std::fflush(stderr);
    }
    if (notice.waitForKey) WaitForOneCharacter();
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
    RemoveRegisteredFiles();
    if (handler != nullptr) handler(status);
    ranks::EndRun(static_cast<int>(status));
}

void WaitForOneCharacter() {
    (void)std::getchar();
}

namespace {
StopNotice OnError(const std::string& line) {
    return {line + "\n", StopNotice::Stream::kErr, false};
}
}  // namespace

void StopOnUnreadableInput(const std::string& message) {
    StopRun(ExitStatus::kUnreadableInput, {message + "\n", StopNotice::Stream::kOut, true});
}

void StopOnBadInput(const std::string& path, int lineNumber, const std::string& fault) {
    StopRun(ExitStatus::kBadInput, OnError(path + ":" + std::to_string(lineNumber) + ": " + fault));
}

void StopOnBadModel(const std::string& fault) {
    StopRun(ExitStatus::kBadInput, OnError(fault));
}

void StopOnBadModel(const std::vector<std::string>& faults) {
    std::string text;
    for (size_t i = 0; i < faults.size() && i < kShownFaults; ++i) text += faults[i] + "\n";
    if (faults.size() > kShownFaults) {
        const size_t more = faults.size() - kShownFaults;
        text += "and " + std::to_string(more) + (more == 1 ? " more fault\n" : " more faults\n");
    }
    StopRun(ExitStatus::kBadInput, {text, StopNotice::Stream::kErr, false});
}

void StopOnUnopenedFile(const std::string& name) {
    StopRun(ExitStatus::kOutputFailure, {"Error: cannot open file(" + name + ")\n"});
}

void StopOnOutputFault(const std::string& text) {
    StopRun(ExitStatus::kOutputFailure, OnError(text));
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
    StopRun(ExitStatus::kSolverFailure, {text});
}
