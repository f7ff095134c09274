// Whole runs as jobs of several ranks under an MPI launcher, against the program alone in the
// same folder: every file, standard output, the lines shown on standard error, the exit status
// and the markers.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/project_fixture.hpp"
#include "support/test_projects.hpp"

namespace {
namespace fs = std::filesystem;

// Why no job can be started here, or nothing.
std::string WhyNoLauncher() {
    if (std::string(VARNEK_MPIEXEC).empty()) return "the program was built without MPI";
    if (access(VARNEK_MPIEXEC, X_OK) != 0)
        return std::string("no MPI launcher at ") + VARNEK_MPIEXEC;
    return "";
}

// A job of this many ranks: they may outnumber the processors, must not be bound to a few of
// them, and the tests may run as root.
std::string Launcher(int ranks) {
    return std::string("OMPI_ALLOW_RUN_AS_ROOT=1 OMPI_ALLOW_RUN_AS_ROOT_CONFIRM=1 '") +
           VARNEK_MPIEXEC + "' -n " + std::to_string(ranks) + " --oversubscribe --bind-to none";
}

struct Outcome {
    ProgramRun run;
    std::map<std::string, std::string> files;  // every file of the folder after the run
};

// Runs in the folder after removing what an earlier run left there.
Outcome RunIn(const ProjectFolder& p, const std::string& launcher) {
    for (const char* name : {"dyn", "output", "a_start.dat", "a_end.dat"})
        fs::remove_all(p.Path(name));
    Outcome outcome{p.Run("", launcher), {}};
    for (const auto& entry : fs::recursive_directory_iterator(p.Root()))
        if (entry.is_regular_file())
            outcome.files[fs::relative(entry.path(), p.Root()).string()] =
                p.Read(fs::relative(entry.path(), p.Root()).string());
    return outcome;
}

// The pieces of a console text between carriage returns, sorted: the lines of the frequency
// loop come in the order in which threads take them up.
std::vector<std::string> SortedPieces(const std::string& text) {
    std::vector<std::string> pieces;
    size_t start = 0;
    while (start <= text.size()) {
        const size_t end = std::min(text.find('\r', start), text.size());
        if (end > start) pieces.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    std::sort(pieces.begin(), pieces.end());
    return pieces;
}

std::vector<std::string> Names(const std::map<std::string, std::string>& files) {
    std::vector<std::string> names;
    for (const auto& entry : files) names.push_back(entry.first);
    return names;
}

using ProjectWriter = std::function<void(const ProjectFolder&)>;

// Both output paths, every side treatment, linear and equivalent-linear runs, in jobs of two
// and of three ranks (lines 1 to 3 of the mixed mesh: one a rank).
TEST(MpiRun, EveryFileOfAJobEqualsThatOfTheProgramAlone) {
    if (const std::string why = WhyNoLauncher(); !why.empty()) GTEST_SKIP() << why;
    const std::pair<const char*, ProjectWriter> projects[] = {
        {"mixed elements, per-step", [](const ProjectFolder& p) { WriteMixedProject(p, false); }},
        {"mixed elements, single-step", [](const ProjectFolder& p) { WriteMixedProject(p, true); }},
        {"transmitting sides, equivalent-linear, per-step",
         [](const ProjectFolder& p) { SideProject{0, true, false}.Write(p); }},
        {"transmitting sides, linear, single-step",
         [](const ProjectFolder& p) { SideProject{0, false, true}.Write(p); }},
        {"viscous sides, equivalent-linear, single-step",
         [](const ProjectFolder& p) { SideProject{1, true, true}.Write(p); }},
        {"no sides, linear, per-step",
         [](const ProjectFolder& p) { SideProject{2, false, false}.Write(p); }},
    };
    for (const auto& [name, write] : projects) {
        SCOPED_TRACE(name);
        ProjectFolder folder;
        write(folder);
        const Outcome alone = RunIn(folder, "");
        ASSERT_EQ(alone.run.status, 0) << alone.run.out << alone.run.err;
        ASSERT_EQ(alone.files.count("a_end.dat"), 1u);
        for (const int ranks : {2, 3}) {
            SCOPED_TRACE(std::to_string(ranks) + " ranks");
            const Outcome job = RunIn(folder, Launcher(ranks));
            EXPECT_EQ(job.run.status, 0) << job.run.err;
            EXPECT_EQ(job.run.out, alone.run.out);
            EXPECT_EQ(SortedPieces(job.run.err), SortedPieces(alone.run.err));
            EXPECT_EQ(Names(job.files), Names(alone.files));
            for (const auto& [file, text] : alone.files) {
                const auto other = job.files.find(file);
                if (other != job.files.end()) {
                    EXPECT_TRUE(other->second == text) << file;
                }
            }
        }
    }
}

// A stop met by one rank alone (line 2 is rank 1's in jobs of two and of three ranks; a value
// that is no number makes its system unsolvable there alone), and stops that every rank meets
// during the shared preparation, which rank 0 alone reports: the job ends with the console text
// and the status of the program alone, and without its end marker.
TEST(MpiRun, AStopOnAnyRankEndsTheJobAsItEndsTheProgramAlone) {
    if (const std::string why = WhyNoLauncher(); !why.empty()) GTEST_SKIP() << why;
    const struct {
        const char* name;
        int sideTreatment;
        std::string file;
        std::string appended;  // empty: the file is taken away
        int status;
        std::string message;
    } cases[] = {
        {"a line of rank 1 that cannot be solved", 0, "output_ff/REMat2.dat",
         std::to_string(2 * SideProject::Node(2, 1)) + " " +
             std::to_string(2 * SideProject::Node(2, 1)) + " nan 0\n",
         -1234 & 0xff, "Solve Error : -1 "},
        {"a missing line matrix", 0, "output_ff/LEMat5.dat", "", 0, "Ematrix5:Reading error\n"},
        {"an unknown boundary code", 2, "boundary.dat", "3 999 0 0\n", 0, "DispBoundary ERROR\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ProjectFolder folder;
        SideProject{c.sideTreatment}.Write(folder);
        if (c.appended.empty())
            fs::remove(folder.Path(c.file));
        else
            folder.Write(c.file, folder.Read(c.file) + c.appended);
        const Outcome alone = RunIn(folder, "");
        ASSERT_EQ(alone.run.status, c.status) << alone.run.out << alone.run.err;
        ASSERT_NE(alone.run.out.find(c.message), std::string::npos) << alone.run.out;
        ASSERT_EQ(alone.files.count("a_end.dat"), 0u);
        for (const int ranks : {2, 3}) {
            SCOPED_TRACE(std::to_string(ranks) + " ranks");
            const Outcome job = RunIn(folder, Launcher(ranks));
            EXPECT_EQ(job.run.status, alone.run.status);
            EXPECT_EQ(job.run.out, alone.run.out);
            EXPECT_EQ(job.files.count("a_end.dat"), 0u);
        }
    }
}

}  // namespace
