#include "support/project_fixture.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

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
    const fs::path in = root_ / ".stdin", out = root_ / ".stdout", err = root_ / ".stderr";
    std::ofstream(in, std::ios::binary) << input;
    const std::string command = "cd '" + root_.string() + "' && " + launcher + " '" +
                                VARNEK_EXECUTABLE + "' < '" + in.string() + "' > '" +
                                out.string() + "' 2> '" + err.string() + "'";
    const int raw = std::system(command.c_str());
    ProgramRun run;
    run.status = WIFEXITED(raw) ? static_cast<signed char>(WEXITSTATUS(raw)) : -1000;
    run.out = Read(".stdout");
    run.err = Read(".stderr");
    fs::remove(in);
    fs::remove(out);
    fs::remove(err);
    return run;
}

size_t CountLines(const std::string& text) {
    size_t n = 0;
    for (char c : text) n += c == '\n';
    return n;
}
