#include "results/maximum_model.hpp"

#include <gtest/gtest.h>

#include "response/work_files.hpp"
#include "results/result_model_fixture.hpp"
#include "results/step_model.hpp"

namespace {

std::vector<float> MaxRecords(int first, int count) {
    return Records(count, 4, 1, [first](int e, int g, int t, int i) {
        return DistinctCode(first + e, g, t, i);
    });
}

class MaximumModel : public ::testing::Test {
  protected:
    MaximumModel() {
        WriteWords(work_files::kMaxDisp, std::vector<double>{0.01, 0.02, 0.03, 0.04, 0, 0, 0, 0});
        WriteWords(work_files::kMaxAcc, std::vector<double>{1.5, 2.5, 0, 0, 0, 0, 0, 0});
        // Groups of one and two elements; the single set holds the same records.
        WriteWords(work_files::MaxStress(0), MaxRecords(0, 1));
        WriteWords(work_files::MaxStress(1), MaxRecords(1, 2));
        WriteWords(work_files::MaxStrain(0), MaxRecords(0, 1));
        WriteWords(work_files::MaxStrain(1), MaxRecords(1, 2));
        WriteWords(work_files::kMaxStress, MaxRecords(0, 3));
        WriteWords(work_files::kMaxStrain, MaxRecords(0, 3));
    }
    std::string Grouped() const {
        std::FILE* file = std::fopen("output_max.inp", "w");
        WriteMaximumModelGrouped(model, 2, {1, 2}, file);
        std::fclose(file);
        return directory.Read("output_max.inp");
    }

    ScratchWorkingDirectory directory;
    CAnalysisData model = SmallModel(3, 4);
};

TEST_F(MaximumModel, HasTheLayoutOfACompleteStepFileWithTheStepCountTwice) {
    const std::string maxima = Grouped();
    EXPECT_NE(maxima.find("---- nstep0 nstep ite_limit tol ----\n4 4 10 5.000000e-02\n"),
              std::string::npos);
    std::FILE* file = std::fopen("output0.inp", "w");
    WriteStepModelFull(model, 0, file);
    std::fclose(file);
    EXPECT_EQ(CountLines(maxima), CountLines(directory.Read("output0.inp")));
    EXPECT_EQ(LineStartingWith(maxima, "1 0.0000 -1.0000 "),
              "1 0.0000 -1.0000 0.0100 0.0200 0.0000 0.0000 150.0000 250.0000 ");
    EXPECT_EQ(LineStartingWith(maxima, "2 1.0000 -1.0000 "),
              "2 1.0000 -1.0000 0.0300 0.0400 0.0000 0.0000 0.0000 0.0000 ");
}

TEST_F(MaximumModel, GroupedAndSingleRecordsGiveTheSameFileOnFourNodeMeshes) {
    std::FILE* file = std::fopen("single.inp", "w");
    WriteMaximumModelSingle(model, file);
    std::fclose(file);
    EXPECT_EQ(Grouped(), directory.Read("single.inp"));
}

TEST_F(MaximumModel, MissingGroupFileEndsTheRunAfterHeadAndNodes) {
    GTEST_FLAG_SET(death_test_style, "fast");  // the child works in this scratch folder
    std::remove(work_files::MaxStress(1).c_str());
    EXPECT_EXIT(
        {
            std::freopen("console.txt", "w", stdout);
            Grouped();
        },
        ::testing::ExitedWithCode(1), "");
    EXPECT_EQ(directory.Read("console.txt"), "Error: cannot open file(work_Mstress1.dat)\n");
    const std::string text = directory.Read("output_max.inp");
    EXPECT_EQ(LineStartingWith(text, "8 3.0000 0.0000 "),
              "8 3.0000 0.0000 0.0000 0.0000 0.0000 0.0000 0.0000 0.0000 ");
    EXPECT_EQ(text.substr(text.size() - 17), "---- stress ----\n");
}

}  // namespace
