// Test support: a scratch project folder on disk, and running the program inside it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct ProgramRun {
    int status = -1;  // exit status of the program; 124 when it ran past its time limit
    std::string out;  // standard output
    std::string err;  // standard error
    double seconds = 0.0;  // wall-clock time of the run
};

class ProjectFolder {
  public:
    ProjectFolder();
    ~ProjectFolder();
    ProjectFolder(const ProjectFolder&) = delete;
    ProjectFolder& operator=(const ProjectFolder&) = delete;

    const std::filesystem::path& Root() const { return root_; }
    // Absolute path of a file below the folder, as a string.
    std::string Path(const std::string& relative) const;
    // Writes a file (creating its folders) with the text exactly as given.
    void Write(const std::string& relative, const std::string& text) const;
    std::string Read(const std::string& relative) const;
    bool Exists(const std::string& relative) const;

    // Runs the program with this folder as the working directory and the given standard input.
    // The console is caught outside the folder. A run that is not over within the time limit
    // is ended (status 124), so that a hang fails the test instead of holding it. With a launcher
    // (a command line that takes the program as its last word), under it.
    ProgramRun Run(const std::string& input = "", const std::string& launcher = "") const;
    // The same for any executable, with its arguments.
    ProgramRun RunExecutable(const std::string& executable,
                             const std::vector<std::string>& arguments,
                             const std::string& input = "") const;
    // Runs the free-field program there with the arguments.
    ProgramRun RunFreeField(const std::vector<std::string>& arguments = {}) const;
    // The same with another working directory (one whose "config_VARNEK.txt" may name this
    // folder as the project).
    ProgramRun RunIn(const std::filesystem::path& workingDirectory,
                     const std::string& input = "") const;

  private:
    ProgramRun RunProgramIn(const std::filesystem::path& workingDirectory,
                            const std::string& executable,
                            const std::vector<std::string>& arguments,
                            const std::string& input, const std::string& launcher = "") const;
    std::filesystem::path root_;
};

// Line count of a text.
size_t CountLines(const std::string& text);

