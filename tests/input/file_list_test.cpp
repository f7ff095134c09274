#include <gtest/gtest.h>

#include "input/line_reader.hpp"
#include "run/analysis_data.hpp"
#include "support/project_fixture.hpp"

namespace {

TEST(Constants, NumbersMayCarryLabelsAndTextLinesTakeNoPlace) {
    ProjectFolder project;
    project.Write("c.txt",
                  "// analysis constants\r\n"
                  "12.5 cut-off [Hz]\r\n"
                  "text line without number\r\n"
                  "0\r\n"
                  "0.01\tdt\r\n"
                  "0.02 tol\r\n"
                  "0.65 ratio\r\n"
                  "8.9 iterations\r\n"
                  "-1.7 side\r\n"
                  "99 ignored\r\n");
    CAnalysisData analysis;
    analysis.clear(0);
    analysis.ReadConstants(project.Path("c.txt"));
    EXPECT_DOUBLE_EQ(analysis.cutoffFrequency, 12.5);
    EXPECT_DOUBLE_EQ(analysis.timeStep, 0.01);
    EXPECT_DOUBLE_EQ(analysis.tolerance, 0.02);
    EXPECT_DOUBLE_EQ(analysis.effectiveStrainRatio, 0.65);
    EXPECT_EQ(analysis.iterationLimit, 8);     // truncated toward zero
    EXPECT_EQ(analysis.sideBoundaryType, -1);  // likewise
}

TEST(Constants, ConstructorDefaultsAreClearedBeforeInput) {
    CAnalysisData analysis;
    EXPECT_DOUBLE_EQ(analysis.tolerance, 0.05);
    analysis.clear(0);
    EXPECT_DOUBLE_EQ(analysis.tolerance, 0.0);
    EXPECT_EQ(analysis.iterationLimit, 10);
}

TEST(ConstantsDeathTest, FewerThanSevenValuesStopWithStatusTwo) {
    ProjectFolder project;
    project.Write("c.txt", "1\n2\n3\n");
    CAnalysisData analysis;
    EXPECT_EXIT(analysis.ReadConstants(project.Path("c.txt")), testing::ExitedWithCode(2),
                "c.txt:3: .*7 values");
}

TEST(FileListDeathTest, EmptyListLineTakesASlotHoldingTheFolderAlone) {
    ProjectFolder project;
    const std::string folder = project.Root().string() + "/";
    project.Write("input_VARNEK.inp", "// comment takes no slot\n\nwave.dat\n");
    CAnalysisData analysis;
    // Slot 0 is the folder itself: the constants reader cannot open it.
    EXPECT_EXIT(analysis.ReadFileList(project.Path("input_VARNEK.inp"), folder),
                testing::ExitedWithCode(0), "");
}

TEST(FileList, MissingListReportsPathAndFolder) {
    ProjectFolder project;
    CAnalysisData analysis;
    testing::internal::CaptureStdout();
    EXPECT_EXIT(analysis.ReadFileList("nowhere/input_VARNEK.inp", "nowhere/"),
                testing::ExitedWithCode(0), "");
    testing::internal::GetCapturedStdout();
}

TEST(FileList, EmptyListPathSkipsAllInput) {
    CAnalysisData analysis;
    analysis.clear(0);
    analysis.ReadFileList("", "x/");
    EXPECT_TRUE(analysis.nodes.empty());
    EXPECT_DOUBLE_EQ(analysis.timeStep, 0.0);
}

TEST(LineReader, CommentNeedsTwoSlashesAndCarriageReturnsAreStripped) {
    ProjectFolder project;
    project.Write("f.txt", "//c\r\n/x\r\n\r\nlast");
    std::vector<std::string> lines;
    std::vector<int> numbers;
    ReadDataLines(project.Path("f.txt"), "unused", [&](const std::string& line, int n) {
        lines.push_back(line);
        numbers.push_back(n);
    });
    EXPECT_EQ(lines, (std::vector<std::string>{"/x", "", "last"}));
    EXPECT_EQ(numbers, (std::vector<int>{2, 3, 4}));
}

TEST(FileList, CommentLineInTheListTakesNoSlot) {
    ProjectFolder project;
    project.Write("config_VARNEK.txt", project.Root().string() + "/\n");
    project.Write("input_VARNEK.inp", "// model of the test\nconstants.dat\nwave.dat\n");
    project.Write("constants.dat", "10\n0\n0.01\n0.02\n0.65\n5\n2\n");
    // Were the comment a slot, the constants reader would fail on it; the wave file is missing.
    const ProgramRun run = project.Run();
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, project.Root().string() + "/\nSesmicData:Reading error\n");
}

}  // namespace
