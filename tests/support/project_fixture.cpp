#include "support/project_fixture.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {
// Far beyond any run of the tests' small projects.
constexpr int kRunTimeLimitSeconds = 120;
}  // namespace

ProjectFolder::ProjectFolder() {
    std::string name = (fs::temp_directory_path() / "varnek-test-XXXXXX").string();
    root_ = mkdtemp(name.data());
}

ProjectFolder::~ProjectFolder() {
    std::error_code ec;
    fs::remove_all(root_, ec);
}

std::string ProjectFolder::Path(const std::string& relative) const {
    return (root_ / relative).string();
}

void ProjectFolder::Write(const std::string& relative, const std::string& text) const {
    const fs::path p = root_ / relative;
    fs::create_directories(p.parent_path());
    std::ofstream(p, std::ios::binary) << text;
}

std::string ProjectFolder::Read(const std::string& relative) const {
    std::ifstream in(root_ / relative, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

bool ProjectFolder::Exists(const std::string& relative) const {
    return fs::exists(root_ / relative);
}

ProgramRun ProjectFolder::Run(const std::string& input, const std::string& launcher) const {
    return RunProgramIn(root_, VARNEK_EXECUTABLE, {}, input, launcher);
}

ProgramRun ProjectFolder::RunIn(const fs::path& workingDirectory, const std::string& input) const {
    return RunProgramIn(workingDirectory, VARNEK_EXECUTABLE, {}, input);
}

ProgramRun ProjectFolder::RunFreeField(const std::vector<std::string>& arguments) const {
    return RunExecutable(VARNEK_FREEFIELD_EXECUTABLE, arguments, "");
}

ProgramRun ProjectFolder::RunExecutable(const std::string& executable,
                                        const std::vector<std::string>& arguments,
                                        const std::string& input) const {
    return RunProgramIn(root_, executable, arguments, input);
}

ProgramRun ProjectFolder::RunProgramIn(const fs::path& workingDirectory,
                                       const std::string& executable,
                                       const std::vector<std::string>& arguments,
                                       const std::string& input,
                                       const std::string& launcher) const {
    // The console files lie in a folder of their own: the project folder may be full or
    // read-only in a test.
    const ProjectFolder console;
    const fs::path in = console.Root() / "stdin", out = console.Root() / "stdout",
                   err = console.Root() / "stderr";
    std::ofstream(in, std::ios::binary) << input;
    std::string command = "cd '" + workingDirectory.string() + "' && timeout -k 5 " +
                          std::to_string(kRunTimeLimitSeconds) + (launcher.empty() ? "" : " env " + launcher) +
                          " '" + executable + "'";
    for (const std::string& argument : arguments) command += " '" + argument + "'";
    command += " < '" + in.string() + "' > '" + out.string() + "' 2> '" + err.string() + "'";
    const auto start = std::chrono::steady_clock::now();
    const int raw = std::system(command.c_str());
    ProgramRun run;
    run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.status = WIFEXITED(raw) ? static_cast<signed char>(WEXITSTATUS(raw)) : -1000;
    run.out = console.Read("stdout");
    run.err = console.Read("stderr");
    return run;
}

size_t CountLines(const std::string& text) {
    size_t n = 0;
    for (char c : text) n += c == '\n';
    return n;
}
