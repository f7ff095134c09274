// Whole runs of a small mixed mesh (one element of each kind) on both output paths.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "support/project_fixture.hpp"

namespace {

// A 4-node square, an 8-node square beside it and a 6-node triangle on top of the 8-node one,
// sharing nodes; the base is fixed.
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
