#include "base/run_stop.hpp"

#include <cstdio>
#include <mutex>

#include "base/console.hpp"
#include "base/ranks.hpp"

void StopRun(ExitStatus status, const StopNotice& notice) {
    static std::mutex stopping;
    stopping.lock();
    ranks::TakeConsoleForStop();
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

void StopOnUnopenedFile(const std::string& name) {
    StopRun(ExitStatus::kOutputFailure, {"Error: cannot open file(" + name + ")\n"});
}

void StopOnOutputFault(const std::string& text) {
    StopRun(ExitStatus::kOutputFailure, OnError(text));
}

void StopOnSolverFailure(const std::string& text) {
    StopRun(ExitStatus::kSolverFailure, {text});
}
