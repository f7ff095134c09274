#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "run/run_control.hpp"
#include "support/project_fixture.hpp"

namespace {

TEST(RunFiles, ConfigLineIsGluedWithoutSeparatorAndMarkersStayInWorkingDirectory) {
    ProjectFolder project;
    ProgramRun run = project.Run();
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "Filelist:Reading error\ninput_VARNEK.inp\n\n");
    ASSERT_TRUE(project.Exists("a_start.dat"));
    EXPECT_EQ(project.Read("a_start.dat"), "");
    EXPECT_FALSE(project.Exists("a_end.dat"));

    project.Write("config_VARNEK.txt/placeholder", "");
    EXPECT_EQ(project.Run().out, "Filelist:Reading error\ninput_VARNEK.inp\n\n");
    std::filesystem::remove_all(project.Path("config_VARNEK.txt"));
    std::filesystem::remove(project.Path("a_start.dat"));

    project.Write("config_VARNEK.txt", "sub/\r\nignored second line\n");
    project.Write("sub/placeholder", "");
    run = project.Run();
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "sub/\nFilelist:Reading error\nsub/input_VARNEK.inp\nsub/\n");
    EXPECT_TRUE(project.Exists("a_start.dat"));
    EXPECT_FALSE(project.Exists("sub/a_start.dat"));

    project.Write("config_VARNEK.txt", "proj\n");
    EXPECT_EQ(project.Run().out, "proj\nFilelist:Reading error\nprojinput_VARNEK.inp\nproj\n");
}

// The fourth field is the single-step flag from 20150123 on; a flag is the token 0 or 1, and the
// fields behind a failed one are not read. Without the file the run is a single pass.
TEST(RunFiles, FlagFileDateThresholdAndTokens) {
    ProjectFolder project;
    for (const auto& [text, date, equivalentLinear, singleStep] :
         {std::tuple{"20150122 500 1 1\n", 20150122u, true, false},
          {"20150123 500 0 1\n", 20150123u, false, true},
          {"20200101 500 true 1\n", 20200101u, false, false},
          {"20200101 500 2 1\n", 20200101u, false, false},
          {nullptr, 0u, false, false}}) {
        if (text != nullptr) project.Write("Flag_VARNEK.inp", text);
        CRunControl run("input_VARNEK.inp", "");
        run.ReadFlags(project.Path(text != nullptr ? "Flag_VARNEK.inp" : "absent.inp"));
        const std::string label = text != nullptr ? text : "no file";
        EXPECT_EQ(run.formatDate, date) << label;
        EXPECT_EQ(run.outputLimit, 500u) << label;
        EXPECT_EQ(run.equivalentLinear, equivalentLinear) << label;
        EXPECT_EQ(run.singleStepOutput, singleStep) << label;
    }
}

}  // namespace
