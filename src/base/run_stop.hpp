// Every way a run ends before its end, in one place: what it shows, where, and the exit status it
// leaves. A stop may be met in a worker thread; it ends the whole process at once, flushing the
// console first and running no static destructors. In a job of several ranks it ends every rank,
// and the console shows what a single process would have shown.
#pragma once

#include <string>

// The exit statuses of the program. A complete run returns 0 from main.
enum class ExitStatus : int {
    // An input file that cannot be opened (after its message and one key), and a boundary code
    // the program does not know: the old contract ends these with 0.
    kUnreadableInput = 0,
    kUnknownBoundaryCode = 0,
    // A work or result file that cannot be opened, written or read back.
    kOutputFailure = 1,
    // The root search of an integration rule that does not converge.
    kRuleFailure = 1,
    // Input that no format defines: an index beyond a list, a record cut short, a model that
    // cannot be analysed.
    kBadInput = 2,
    // An integration point number outside its element.
    kPointOutOfRange = -1,
    // The sparse solver failed on a frequency line.
    kSolverFailure = -1234,
};

// What a stop shows before it ends the run: a text as it stands (line ends included) on standard
// output or standard error, and whether the run then waits for one key.
struct StopNotice {
    enum class Stream { kOut, kErr };
    std::string text;
    Stream stream = Stream::kOut;
    bool waitForKey = false;
};

// Ends the process with status after showing the notice; the console is flushed first. Only the
// first stop of a process reports; another one met at the same time waits here for the end.
[[noreturn]] void StopRun(ExitStatus status, const StopNotice& notice = {});

// An input file that cannot be opened: the message and a line end on standard output, a wait for
// one character on standard input (end of input counts as one), status 0.
[[noreturn]] void StopOnUnreadableInput(const std::string& message);

// Input the formats leave undefined: "path:line: fault" on standard error, status 2.
[[noreturn]] void StopOnBadInput(const std::string& path, int lineNumber, const std::string& fault);

// A model that cannot be analysed, where no file line is to blame (an element, a node or a
// material, numbered from 1): the fault on standard error, status 2.
[[noreturn]] void StopOnBadModel(const std::string& fault);

// A result or work file that cannot be opened: the error line naming the file on standard
// output, status 1.
[[noreturn]] void StopOnUnopenedFile(const std::string& name);

// A work file that cannot be measured or read back: the text on standard error, status 1.
[[noreturn]] void StopOnOutputFault(const std::string& text);

// A failed sparse solve: the text on standard output, status -1234.
[[noreturn]] void StopOnSolverFailure(const std::string& text);

// Waits for one character on standard input; end of input counts as one.
void WaitForOneCharacter();
