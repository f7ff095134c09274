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

ProgramRun ProjectFolder::Run(const std::string& input) const {
    return RunIn(root_, input);
}

ProgramRun ProjectFolder::RunIn(const fs::path& workingDirectory, const std::string& input) const {
    // The console files lie in a folder of their own: the project folder may be full or
    // read-only in a test.
    const ProjectFolder console;
    const fs::path in = console.Root() / "stdin", out = console.Root() / "stdout",
                   err = console.Root() / "stderr";
    std::ofstream(in, std::ios::binary) << input;
    const std::string command = "cd '" + workingDirectory.string() + "' && timeout -k 5 " +
                                std::to_string(kRunTimeLimitSeconds) + " '" + VARNEK_EXECUTABLE +
                                "' < '" + in.string() + "' > '" + out.string() + "' 2> '" +
                                err.string() + "'";
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

void WriteMixedProject(const ProjectFolder& p, bool singleStep) {
    p.Write("Flag_VARNEK.inp", singleStep ? "20200101 500 1 1\n" : "20200101 500 1 0\n");
    p.Write("input_VARNEK.inp", "c.dat\nwave.csv\nnodes.dat\nelements.dat\nmat.dat\nbc.dat\n");
    p.Write("c.dat", "10\n0\n0.01\n0.05\n0.65\n3\n2\n");
    std::ostringstream wave;
    wave << "w,0.01,1\n";
    for (int k = 0; k <= 20; ++k) wave << k * 0.01 << "," << (k % 5) * 10.0 - 20.0 << "\n";
    p.Write("wave.csv", wave.str());
    p.Write("nodes.dat",
            "0 0\n1 0\n1 1\n0 1\n2 0\n2 1\n1.5 0\n2 0.5\n1.5 1\n1 0.5\n1.5 1.5\n1.25 1.25\n"
            "1.75 1.25\n");
    p.Write("elements.dat", "0 4 1 0 1 2 3\n1 8 1 1 4 5 2 6 7 8 9\n1 6 1 5 10 2 11 8 12\n");
    // An elastic gravel and a table-model clay.
    p.Write("mat.dat",
            "2\n5\n0.0019\n0.0019\n0\n80\n0.3\n0.03\n"
            "2\n0.0017\n0.0017\n0\n30\n0.4\n0.02\n3\n1e-6\n1e-4\n1e-2\n1\n0.8\n0.2\n2\n5\n15\n");
    p.Write("bc.dat", "0 2 0 0\n1 2 0 0\n4 2 0 0\n6 2 0 0\n");
    std::string stress = "---- stress ----\n";
    for (int i = 0; i < 4 + 9 + 7; ++i) stress += std::to_string(i + 1) + " -1 -2 -1 0.1 0 0\n";
    p.Write("output0.inp", stress);
}
