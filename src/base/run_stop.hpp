// Every way a run ends before its end, in one place: what it shows, where, and the exit status it
// leaves. A stop may be met in a worker thread; it ends the whole process at once, flushing the
// console first, removing the files registered with RemoveOnStop and running no static
// destructors. In a job of several ranks it ends every rank, and the console shows what a single
// process would have shown.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

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

// Ends the process with status after showing the notice; the console is flushed first and the
// files registered with RemoveOnStop are removed. Only the first stop of a process reports;
// another one met at the same time waits here for the end.
[[noreturn]] void StopRun(ExitStatus status, const StopNotice& notice = {});

// Registers a file that a stopped run must not leave behind (a scratch file of the run): every
// stop removes it. A relative name is taken in the working directory of the call. Safe to call
// from any thread; a name may be registered more than once.
void RemoveOnStop(const std::string& path);

// What ends the process once a stop has shown its message and removed its files. The program
// keeps the default, _exit with the status. A harness that drives parts of the program within
// its own process puts a handler that throws, so that a stop returns control to it; a handler
// that returns falls back to the default.
using StopHandler = void (*)(ExitStatus status);
void SetStopHandler(StopHandler handler);

// An input file that cannot be opened: the message and a line end on standard output, a wait for
// one character on standard input (end of input counts as one), status 0.
[[noreturn]] void StopOnUnreadableInput(const std::string& message);

// Input the formats leave undefined: "path:line: fault" on standard error, status 2.
[[noreturn]] void StopOnBadInput(const std::string& path, int lineNumber, const std::string& fault);

// A model that cannot be analysed, where no file line is to blame (an element, a node or a
// material, numbered from 1): the fault on standard error, status 2.
[[noreturn]] void StopOnBadModel(const std::string& fault);

// The faults a model check found, one a line on standard error (the first kShownFaults, then
// "and N more faults"), status 2.
constexpr size_t kShownFaults = 20;
[[noreturn]] void StopOnBadModel(const std::vector<std::string>& faults);

// A work file that cannot be opened to be read back: the error line naming the file on standard
// output, status 1.
[[noreturn]] void StopOnUnopenedFile(const std::string& name);

// A work file that cannot be measured or read back: the text on standard error, status 1.
[[noreturn]] void StopOnOutputFault(const std::string& text);

// A result, work or marker file that cannot be created, or whose writing or closing fails (no
// space left, no permission, a folder or a file in the way): "Error: cannot create file(name):
// reason" or "Error: cannot write file(name): reason" on standard error, the reason being the
// system's text for error, status 1. When several threads fail at once, the first reports and
// the others wait for the end.
[[noreturn]] void StopOnFileNotCreated(const std::string& name, int error);
[[noreturn]] void StopOnFileNotWritten(const std::string& name, int error);
// A result folder that cannot be created or is not a folder: "Error: cannot create
// folder(name): reason" on standard error, status 1.
[[noreturn]] void StopOnFolderNotCreated(const std::string& name, int error);

// A failed sparse solve: the text on standard output, status -1234. Only the first failing
// thread reports; one failing at the same time waits here until the process is gone.
[[noreturn]] void StopOnSolverFailure(const std::string& text);

// Waits for one character on standard input; end of input counts as one.
void WaitForOneCharacter();
