// Whole runs of the small mixed project whose results cannot be written: a file or a folder in
// the way, a full disk, a read-only folder. Each must end with status 1 and one message naming
// the file and the system's reason, leave no end marker and no work file, and end within a few
// seconds (a failing open is tried again for a bounded time only).
#include <gmock/gmock.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>

#include "support/mixed_project.hpp"
#include "support/project_fixture.hpp"
#include "support/scoped_mount.hpp"

namespace {

namespace fs = std::filesystem;

// The run's surroundings: the project folder, and the working directory, which is the project
// folder itself unless a case gives it a folder of its own that names the project in
// "config_VARNEK.txt".
struct Scene {
    explicit Scene(bool singleStep) : singleStep(singleStep) {
        WriteMixedProject(project, singleStep);
    }
    void SeparateWorkingDirectory() {
        working = std::make_unique<ProjectFolder>();
        WriteConfig();
    }
    void WriteConfig() const {
        working->Write("config_VARNEK.txt", project.Root().string() + "/\n");
    }
    const ProjectFolder& Working() const { return working ? *working : project; }

    bool singleStep;
    ProjectFolder project;
    std::unique_ptr<ProjectFolder> working;
    std::vector<std::unique_ptr<ScopedMount>> mounts;  // undone before the folders go
};

// Arranges the fault; returns the reason when it cannot be arranged here (the case skips).
using Arrange = std::function<std::string(Scene&)>;

struct WriteFault {
    const char* name;
    bool singleStep;
    Arrange arrange;
    const char* message;  // a regular expression that the end of standard error must match
    bool beforeAnalysis;  // the run must stop before any result is written
};

void InTheWay(const ProjectFolder& p, const std::string& name, bool folder) {
    if (folder)
        p.Write(name + "/keep", "");  // a folder that cannot be removed or replaced
    else
        p.Write(name, "");
}

// A name that leads to /dev/full, where every write fails for want of space.
void ToFullDevice(const ProjectFolder& p, const std::string& name) {
    fs::create_directories(fs::path(p.Path(name)).parent_path());
    fs::create_symlink("/dev/full", p.Path(name));
}

std::string MountReadOnly(Scene& scene, const std::string& folder) {
    std::string why;
    auto mount = ScopedMount::ReadOnly(folder, why);
    if (mount) scene.mounts.push_back(std::move(mount));
    return why;
}

size_t UsedBytes(const std::string& folder) {
    struct statvfs info {};
    statvfs(folder.c_str(), &info);
    return (info.f_blocks - info.f_bfree) * info.f_frsize;
}

// A tmpfs over folder, filled by fill, then shrunk to what it holds plus spare bytes.
std::string MountSmallDisk(Scene& scene, const std::string& folder, size_t spare,
                           const std::function<void()>& fill) {
    std::string why;
    auto mount = ScopedMount::Tmpfs(folder, size_t{1} << 20, why);
    if (!mount) return why;
    fill();
    if (!mount->Resize(UsedBytes(folder) + spare, why)) return why;
    scene.mounts.push_back(std::move(mount));
    return "";
}

void ExpectStoppedForTheFault(const WriteFault& fault) {
    SCOPED_TRACE(fault.name);
    Scene scene(fault.singleStep);
    if (const std::string why = fault.arrange(scene); !why.empty())
        GTEST_SKIP() << fault.name << ": " << why;
    const ProjectFolder& working = scene.Working();
    const ProgramRun run = scene.project.RunIn(working.Root());

    EXPECT_EQ(run.status, 1) << run.out << run.err;
    EXPECT_THAT(run.err, ::testing::ContainsRegex(fault.message));
    // One report, however many threads failed.
    EXPECT_EQ(CountLines(run.err.substr(run.err.find("Error"))), 1u) << run.err;
    EXPECT_LT(run.seconds, 20.0);
    EXPECT_FALSE(fs::is_regular_file(working.Path("a_end.dat")));
    for (const auto& entry : fs::directory_iterator(working.Root()))
        EXPECT_NE(entry.path().filename().string().rfind("work_", 0), 0u) << entry.path();
    if (fault.beforeAnalysis) {
        EXPECT_FALSE(scene.project.Exists("output/output0.inp"));
    }
}

TEST(WriteFailure, FilesAndFoldersInTheWayStopTheRunAndLeaveNoWorkFiles) {
    const WriteFault faults[] = {
        {"\"output\" is a file, after a complete run", false,
         [](Scene& s) {
             s.project.Write("a_end.dat", "");  // the marker of the earlier run must go
             return InTheWay(s.project, "output", false), "";
         },
         "Error: cannot create folder\\(output/\\): Not a directory\n$", true},
        {"\"dyn\" is a file", true, [](Scene& s) { return InTheWay(s.project, "dyn", false), ""; },
         "Error: cannot create folder\\(dyn/\\): Not a directory\n$", true},
        {"a step file is a folder", false,
         [](Scene& s) { return InTheWay(s.project, "output/output7.inp", true), ""; },
         "Error: cannot create file\\(output/output7\\.inp\\): Is a directory\n$", false},
        {"a time-history file is a folder", true,
         [](Scene& s) { return InTheWay(s.project, "dyn/femsig2.dat", true), ""; },
         "Error: cannot create file\\(dyn/femsig2\\.dat\\): Is a directory\n$", false},
        {"the start marker is a folder", false,
         [](Scene& s) { return InTheWay(s.project, "a_start.dat", true), ""; },
         "Error: cannot create file\\(a_start\\.dat\\): Is a directory\n$", true},
        {"the end marker is a folder", false,
         [](Scene& s) { return InTheWay(s.project, "a_end.dat", true), ""; },
         "Error: cannot create file\\(a_end\\.dat\\): Is a directory\n$", false},
    };
    for (const WriteFault& fault : faults) ExpectStoppedForTheFault(fault);
}

TEST(WriteFailure, AFullDeviceStopsTheRunAtTheWriteThatMeetsIt) {
    const WriteFault faults[] = {
        {"a work file on a full device", false,
         [](Scene& s) { return ToFullDevice(s.project, "work_acc.dat"), ""; },
         "Error: cannot write file\\(work_acc\\.dat\\): No space left on device\n$", false},
        {"the maxima on a full device", true,
         [](Scene& s) { return ToFullDevice(s.project, "output/output_max.inp"), ""; },
         "Error: cannot write file\\(output/output_max\\.inp\\): No space left on device\n$",
         false},
        {"a time history on a full device", false,
         [](Scene& s) { return ToFullDevice(s.project, "dyn/acc5.dat"), ""; },
         "Error: cannot write file\\(dyn/acc5\\.dat\\): No space left on device\n$", false},
    };
    for (const WriteFault& fault : faults) ExpectStoppedForTheFault(fault);
}

// Real file systems mounted over the folders: skipped, with the reason, where mounting is not
// permitted.
TEST(WriteFailure, FullAndReadOnlyFileSystemsStopTheRunWithinTheRetryOfTheOpen) {
    const WriteFault faults[] = {
        {"a working directory on a full disk", false,
         [](Scene& s) {
             s.SeparateWorkingDirectory();
             return MountSmallDisk(s, s.working->Root().string(), 0, [&] { s.WriteConfig(); });
         },
         "Error: cannot write file\\(work_[A-Za-z]+\\.dat\\): No space left on device\n$", false},
        {"a project folder on a full disk", false,
         [](Scene& s) {
             s.SeparateWorkingDirectory();
             return MountSmallDisk(s, s.project.Root().string(), 4 * 4096,
                                   [&] { WriteMixedProject(s.project, s.singleStep); });
         },
         "Error: cannot write file\\(/.*/(output/output[0-9]+\\.inp|dyn/[a-z]+[0-9]+\\.dat)\\): "
         "No space left on device\n$",
         false},
        {"a read-only working directory", false,
         [](Scene& s) {
             s.SeparateWorkingDirectory();
             return MountReadOnly(s, s.working->Root().string());
         },
         "Error: cannot create file\\(a_start\\.dat\\): Read-only file system\n$", true},
        {"a read-only project folder", false,
         [](Scene& s) {
             s.SeparateWorkingDirectory();
             return MountReadOnly(s, s.project.Root().string());
         },
         "Error: cannot create folder\\(/.*/dyn/\\): Read-only file system\n$", true},
        {"a read-only output folder", false,
         [](Scene& s) {
             s.project.Write("output/keep", "");
             return MountReadOnly(s, s.project.Path("output"));
         },
         "Error: cannot create file\\(output/output[0-9]+\\.inp\\): Read-only file system\n$",
         false},
    };
    for (const WriteFault& fault : faults) ExpectStoppedForTheFault(fault);
}

}  // namespace
