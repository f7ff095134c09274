#include "base/run_stop.hpp"

#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <mutex>

#include "base/console.hpp"

void StopRun(ExitStatus status) {
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
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

void StopOnSolverFailure(const std::string& text) {
    static std::mutex reporting;
    reporting.lock();
    console::Out(text);
    StopRun(ExitStatus::kSolverFailure);
}
