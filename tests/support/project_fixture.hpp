// Test support: a scratch project folder on disk, and running the program inside it.
#pragma once

#include <filesystem>
#include <string>

struct ProgramRun {
    int status = -1;  // exit status of the program
    std::string out;  // standard output
    std::string err;  // standard error
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

    // Runs the program with this folder as the working directory and the given standard input;
    // with a launcher (a command line that takes the program as its last word), under it.
    ProgramRun Run(const std::string& input = "", const std::string& launcher = "") const;

  private:
    std::filesystem::path root_;
};

// Line count of a text.
size_t CountLines(const std::string& text);
