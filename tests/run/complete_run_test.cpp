// Whole runs of a small mixed mesh (one element of each kind) on both output paths.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/mixed_project.hpp"
#include "support/project_fixture.hpp"
#include "support/test_projects.hpp"

namespace {

std::string Block(const std::string& text, const std::string& banner) {
    const size_t start = text.find(banner);
    const size_t end = text.find("----", start + banner.size());
    return text.substr(start, end - start);
}

void ExpectCompleteRun(const ProjectFolder& p, int stepFiles) {
    const ProgramRun run = p.Run();
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(p.Exists("a_end.dat"));
    for (const auto& entry : std::filesystem::directory_iterator(p.Root()))
        EXPECT_NE(entry.path().filename().string().rfind("work_", 0), 0u) << entry.path();
    EXPECT_TRUE(p.Exists("output/output" + std::to_string(stepFiles - 1) + ".inp"));
    EXPECT_FALSE(p.Exists("output/output" + std::to_string(stepFiles) + ".inp"));
    // 13 nodes and 3 elements, each file a heading and 21 steps.
    EXPECT_EQ(CountLines(p.Read("dyn/acc13.dat")), 22u);
    EXPECT_EQ(CountLines(p.Read("dyn/femsig3.dat")), 22u);
    EXPECT_FALSE(p.Exists("dyn/acc14.dat"));
}

TEST(CompleteRun, BothOutputPathsFinishWithTheSameNodeMotion) {
    ProjectFolder perStep, singleStep;
    WriteMixedProject(perStep, false);
    WriteMixedProject(singleStep, true);
    ExpectCompleteRun(perStep, 21);
    ExpectCompleteRun(singleStep, 1);

    const std::string a = perStep.Read("output/output0.inp");
    const std::string b = singleStep.Read("output/output0.inp");
    EXPECT_EQ(Block(a, "---- node"), Block(b, "---- node"));
    EXPECT_EQ(perStep.Read("dyn/acc7.dat"), singleStep.Read("dyn/acc7.dat"));
    EXPECT_EQ(perStep.Read("dyn/femsig2.dat"), singleStep.Read("dyn/femsig2.dat"));
    // The fixed base node moves with the input: its absolute acceleration is the wave itself.
    EXPECT_NE(perStep.Read("dyn/acc1.dat").find("\n0.010000 -0.100000 0.000000\n"),
              std::string::npos);
}

}  // namespace
