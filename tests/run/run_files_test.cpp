#include <gtest/gtest.h>

#include "run/run_control.hpp"
#include "support/project_fixture.hpp"

namespace {

CRunControl FlagsFrom(const ProjectFolder& project, const std::string& text) {
    project.Write("Flag_VARNEK.inp", text);
    CRunControl run("input_VARNEK.inp", "");
    run.ReadFlags(project.Path("Flag_VARNEK.inp"));
    return run;
}

TEST(RunFiles, EmptyWorkingDirectoryFailsOnFileListAndLeavesOnlyStartMarker) {
    ProjectFolder project;
    const ProgramRun run = project.Run();
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "Filelist:Reading error\ninput_VARNEK.inp\n\n");
    ASSERT_TRUE(project.Exists("a_start.dat"));
    EXPECT_EQ(project.Read("a_start.dat"), "");
    EXPECT_FALSE(project.Exists("a_end.dat"));
}

TEST(RunFiles, ConfigLineIsPrintedAndGluedWithoutSeparator) {
    ProjectFolder project;
    project.Write("config_VARNEK.txt", "proj\r\nignored second line\n");
    const ProgramRun run = project.Run();
    EXPECT_EQ(run.status, 0);
    // The folder prefix runs together with the file name: no separator is put in.
    EXPECT_EQ(run.out, "proj\nFilelist:Reading error\nprojinput_VARNEK.inp\nproj\n");
}

TEST(RunFiles, MarkersGoToWorkingDirectoryEvenWithProjectElsewhere) {
    ProjectFolder project;
    project.Write("config_VARNEK.txt", "sub/\n");
    project.Write("sub/placeholder", "");
    project.Run();
    EXPECT_TRUE(project.Exists("a_start.dat"));
    EXPECT_FALSE(project.Exists("sub/a_start.dat"));
}

TEST(RunFiles, FlagFileDateThresholdDecidesTheFourthField) {
    ProjectFolder project;
    CRunControl older = FlagsFrom(project, "20150122 500 1 1\n");
    EXPECT_EQ(older.formatDate, 20150122u);
    EXPECT_TRUE(older.equivalentLinear);
    EXPECT_FALSE(older.singleStepOutput);

    CRunControl newer = FlagsFrom(project, "20150123 500 0 1\n");
    EXPECT_FALSE(newer.equivalentLinear);
    EXPECT_TRUE(newer.singleStepOutput);
}

TEST(RunFiles, FlagAcceptsOnlyTheTokensZeroAndOne) {
    ProjectFolder project;
    CRunControl word = FlagsFrom(project, "20200101 500 true 1\n");
    EXPECT_FALSE(word.equivalentLinear);
    EXPECT_FALSE(word.singleStepOutput);  // fields behind a failed flag are not read

    CRunControl two = FlagsFrom(project, "20200101 500 2 1\n");
    EXPECT_FALSE(two.equivalentLinear);
    EXPECT_FALSE(two.singleStepOutput);
}

TEST(RunFiles, MissingFlagFileLeavesASinglePassRun) {
    ProjectFolder project;
    CRunControl run("input_VARNEK.inp", "");
    run.ReadFlags(project.Path("absent.inp"));
    EXPECT_EQ(run.formatDate, 0u);
    EXPECT_EQ(run.outputLimit, 500u);
    EXPECT_FALSE(run.equivalentLinear);
}

}  // namespace
