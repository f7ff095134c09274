#include "results/record_batches.hpp"

#include <gtest/gtest.h>

#include <map>

#include "response/work_files.hpp"
#include "results/result_model_fixture.hpp"
#include "results/step_records.hpp"

namespace {

class RecordBatches : public ::testing::Test {
  protected:
    // One group file of each kind per element, all steps.
    void WriteGroupFiles(int groups, int steps) {
        for (int k = 0; k < groups; ++k) {
            const std::vector<float> records = Records(1, 4, steps, DistinctCode);
            WriteWords(work_files::Stress(k), records);
            WriteWords(work_files::Strain(k), records);
        }
    }

    ScratchWorkingDirectory directory;
};

TEST_F(RecordBatches, BatchEndsWithTheFileThatTakesItAboveTheLimit) {
    for (int k = 0; k < 4; ++k)
        directory.Folder().Write(work_files::Stress(k), std::string(k == 3 ? 50 : 100, 'x'));
    EXPECT_EQ(BatchFileCounts(4, 150), (std::vector<int>{2, 2}));
    EXPECT_EQ(BatchFileCounts(4, 250), (std::vector<int>{3, 1}));
    EXPECT_EQ(BatchFileCounts(4, 99), (std::vector<int>{1, 1, 1, 1}));
    EXPECT_EQ(BatchFileCounts(4, 1000), (std::vector<int>{4}));
}

TEST_F(RecordBatches, UnmeasurableGroupFileEndsTheRun) {
    GTEST_FLAG_SET(death_test_style, "fast");  // the child works in this scratch folder
    WriteGroupFiles(2, 1);
    EXPECT_EXIT(BatchFileCounts(3, 1000), ::testing::ExitedWithCode(1),
                "^Error : work_stress2.datを開くことできませんでした。\n$");
}

TEST_F(RecordBatches, PassesWriteEveryStepWithProgressOnEveryTenthStep) {
    const CAnalysisData model = SmallModel(2, 12);
    WriteGroupFiles(2, 12);
    for (int s = 0; s < 12; ++s) std::fclose(std::fopen(StepFileName("", s).c_str(), "w"));
    ::testing::internal::CaptureStdout();
    AppendRecordPass(RecordKind::kStress, model, "", 12, {1, 1}, {1, 1});
    AppendRecordPass(RecordKind::kStrain, model, "", 12, {1, 1}, {1, 1});
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "\r時刻歴ファイル出力中(Stress 1/2) 0step\r時刻歴ファイル出力中(Stress 1/2) 10step"
              "\r時刻歴ファイル出力中(Stress 2/2) 0step\r時刻歴ファイル出力中(Stress 2/2) 10step"
              "\r時刻歴ファイル出力中(Strain 1/2) 0step\r時刻歴ファイル出力中(Strain 1/2) 10step"
              "\r時刻歴ファイル出力中(Strain 2/2) 0step\r時刻歴ファイル出力中(Strain 2/2) 10step");
    const std::string last = directory.Read("output11.inp");
    EXPECT_EQ(LinesPerElement(BlockLines(last, "---- stress ----")),
              (std::map<int, int>{{1, 4}, {2, 4}}));
    EXPECT_EQ(LinesPerElement(BlockLines(last, "---- strain ----")),
              (std::map<int, int>{{1, 4}, {2, 4}}));
    EXPECT_NE(last.find("---- pvsn & eq_epn ----\n0\n"), std::string::npos);
}

TEST_F(RecordBatches, LaterBatchesAreNumberedByTheFileCountOfTheBatchBefore) {
    // Batches of 1, 2 and 1 files: the third starts at 2 x 2 x 1 = 4, one past its true first
    // element 3, as the result files have always been numbered.
    const CAnalysisData model = SmallModel(4, 1);
    WriteGroupFiles(4, 1);
    AppendRecordPass(RecordKind::kStrain, model, "", 1, {1, 1, 1, 1}, {1, 2, 1});
    EXPECT_EQ(LinesPerElement(BlockLines(directory.Read("output0.inp"), "---- strain ----")),
              (std::map<int, int>{{1, 4}, {2, 4}, {3, 4}, {5, 4}}));
}

TEST_F(RecordBatches, UnreadableGroupFileEndsTheRunWithItsName) {
    GTEST_FLAG_SET(death_test_style, "fast");  // the child works in this scratch folder
    const CAnalysisData model = SmallModel(2, 1);
    WriteGroupFiles(1, 1);
    EXPECT_EXIT(
        {
            std::freopen("console.txt", "w", stdout);
            AppendRecordPass(RecordKind::kStress, model, "", 1, {1, 1}, {2});
        },
        ::testing::ExitedWithCode(1), "");
    EXPECT_EQ(directory.Read("console.txt"), "Error: cannot open file(work_stress1.dat)\n");
}

}  // namespace
