#include "results/time_history_text.hpp"

#include "support/result_model_fixture.hpp"

namespace {

class TimeHistoryText : public ::testing::Test {
  protected:
    TimeHistoryText() {
        directory.Write("dyn/.keep", "");
        directory.Write(work_files::kAcc, "");  // zero motion unless a test writes its own
    }

    ScratchWorkingDirectory directory;
    CAnalysisData model = SmallModel(2, 3);  // 6 nodes, 2 elements, 3 steps of 0.01 s
};

TEST_F(TimeHistoryText, AccelerationFilesAreNumberedFromOneWithTheirHeading) {
    std::vector<double> acc;
    for (int n = 0; n < 6; ++n)
        for (int t = 0; t < 3; ++t) acc.insert(acc.end(), {n + 0.125 * t, -0.5 * t});
    WriteWords(work_files::kAcc, acc);
    WriteAccFiles(0.01, "dyn/", model);
    EXPECT_EQ(directory.Read("dyn/acc5.dat"),
              "time[s]\taccX[m/s2] accY[m/s2]\n0.000000 4.000000 -0.000000\n"
              "0.010000 4.125000 -0.500000\n0.020000 4.250000 -1.000000\n");
    EXPECT_FALSE(directory.Exists("dyn/acc0.dat"));
    EXPECT_TRUE(directory.Exists("dyn/acc6.dat"));
}

TEST_F(TimeHistoryText, ElementStressIsSignReversedEvenAtZeroAndNumberedOnAcrossGroups) {
    const std::string heading = "time[s]\tsx[kPa]\tsy[kPa]\tsxy[kPa]\n";
    const std::string zeros = " -0.000000 -0.000000 -0.000000\n";
    const std::string laterZeros = "0.010000" + zeros + "0.020000" + zeros;
    // x, y, xy of each step; the second element's file runs beyond the data.
    WriteWords(work_files::kElementStress,
               std::vector<float>{0, 1.5, -2, 0, 0, 0, 0, 0, 0, 7, 8, 9});
    WriteElementStressFiles(0.01, "dyn/", model);
    EXPECT_EQ(directory.Read("dyn/femsig1.dat"),
              heading + "0.000000 -0.000000 -1.500000 2.000000\n" + laterZeros);
    EXPECT_EQ(directory.Read("dyn/femsig2.dat"),
              heading + "0.000000 -7.000000 -8.000000 -9.000000\n" + laterZeros);

    model = SmallModel(3, 2);
    WriteWords(work_files::ElementStress(0), std::vector<float>{1, 2, 3, 4, 5, 6});
    WriteWords(work_files::ElementStress(1),
               std::vector<float>{10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120});
    WriteTimeHistoriesGrouped("dyn/", model, 2, {1, 2});
    EXPECT_EQ(directory.Read("dyn/femsig3.dat"),
              heading +
                  "0.000000 -70.000000 -80.000000 -90.000000\n"
                  "0.010000 -100.000000 -110.000000 -120.000000\n");
}

TEST_F(TimeHistoryText, MissingGroupFileEndsTheRunBeforeAnyElementFile) {
    model.nodes.clear();  // no parallel loop runs in the forked child
    WriteWords(work_files::ElementStress(0), std::vector<float>{1, 2, 3});
    auto grouped = [&] { WriteTimeHistoriesGrouped("dyn/", model, 2, {1, 1}); };
    EXPECT_EQ(directory.ConsoleOfExit(1, grouped),
              "\r節点加速度データファイル出力終了\t\t\t\t\t\n"
              "Error: cannot open file(work_Avestress1.dat)\n");
    EXPECT_FALSE(directory.Exists("dyn/femsig1.dat"));
}

}  // namespace
