#include "results/record_batches.hpp"

#include "results/step_records.hpp"
#include "support/result_model_fixture.hpp"

namespace {

class RecordBatches : public ::testing::Test {
  protected:
    // Group file k holds element k alone, all steps; the step files exist.
    void WriteGroupFiles(int groups, int steps) {
        for (int k = 0; k < groups; ++k) {
            WriteWords(work_files::Stress(k), Records(k, 1, steps));
            WriteWords(work_files::Strain(k), Records(k, 1, steps));
        }
        for (int s = 0; s < steps; ++s) std::fclose(std::fopen(StepFileName("", s).c_str(), "w"));
    }
    void Pass(RecordKind kind, int steps, const std::vector<int>& batchFileCounts) {
        AppendRecordPass(kind, model, "", steps, std::vector<uint32_t>(model.elements.size(), 1),
                         batchFileCounts);
    }

    ScratchWorkingDirectory directory;
    CAnalysisData model = SmallModel(2, 12);
};

TEST_F(RecordBatches, BatchEndsWithTheFileThatTakesItAboveTheLimit) {
    for (int k = 0; k < 4; ++k)
        directory.Write(work_files::Stress(k), std::string(k == 3 ? 50 : 100, 'x'));
    EXPECT_EQ(BatchFileCounts(4, 150), (std::vector<int>{2, 2}));
    EXPECT_EQ(BatchFileCounts(4, 250), (std::vector<int>{3, 1}));
    EXPECT_EQ(BatchFileCounts(4, 99), (std::vector<int>{1, 1, 1, 1}));
    EXPECT_EQ(BatchFileCounts(4, 1000), (std::vector<int>{4}));
}

TEST_F(RecordBatches, MissingGroupFileEndsTheRunWithItsName) {
    WriteGroupFiles(1, 1);
    EXPECT_EQ(directory.ConsoleOfExit(1, [&] { Pass(RecordKind::kStress, 1, {2}); }),
              "Error: cannot open file(work_stress1.dat)\n");
    EXPECT_EXIT(BatchFileCounts(2, 1000), ::testing::ExitedWithCode(1),
                "^Error : work_stress1.datを開くことできませんでした。\n$");
}

TEST_F(RecordBatches, BatchesShareOneBannerNumberOnAndCloseOnceWithProgressEveryTenthStep) {
    WriteGroupFiles(2, 12);
    ::testing::internal::CaptureStdout();
    Pass(RecordKind::kStress, 12, {1, 1});
    Pass(RecordKind::kStrain, 12, {1, 1});
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "\r時刻歴ファイル出力中(Stress 1/2) 0step\r時刻歴ファイル出力中(Stress 1/2) 10step"
              "\r時刻歴ファイル出力中(Stress 2/2) 0step\r時刻歴ファイル出力中(Stress 2/2) 10step"
              "\r時刻歴ファイル出力中(Strain 1/2) 0step\r時刻歴ファイル出力中(Strain 1/2) 10step"
              "\r時刻歴ファイル出力中(Strain 2/2) 0step\r時刻歴ファイル出力中(Strain 2/2) 10step");
    const std::string last = directory.Read("output11.inp");
    for (const std::string banner : {"---- stress ----", "---- strain ----"}) {
        EXPECT_EQ(last.find(banner), last.rfind(banner));
        EXPECT_EQ(LinesPerElement(last, banner), (std::map<int, int>{{1, 4}, {2, 4}}));
    }
    EXPECT_EQ(BlockLines(last, "---- stress ----")[5], StressLine(2, 1210));  // point 1
    EXPECT_TRUE(last.ends_with(kClosingBlocks));
}

TEST_F(RecordBatches, LinesAreCountedAndNumberedByTheirOwnOldRules) {
    // Stress lines take the point count of the index within the batch, strain lines that within
    // the group, from the first element; the third batch is numbered from 2 x 2 x 1 + 1 = 5.
    model = SmallModel(4, 1);
    const std::vector<int> points = {4, 9, 4, 4};
    for (size_t e = 0; e < points.size(); ++e) model.elements[e].gaussCount = points[e];
    WriteGroupFiles(4, 1);
    Pass(RecordKind::kStress, 1, {1, 2, 1});
    Pass(RecordKind::kStrain, 1, {1, 2, 1});
    const std::string text = directory.Read("output0.inp");
    EXPECT_EQ(LinesPerElement(text, "---- stress ----"),
              (std::map<int, int>{{1, 4}, {2, 4}, {3, 9}, {5, 4}}));
    EXPECT_EQ(LinesPerElement(text, "---- strain ----"),
              (std::map<int, int>{{1, 4}, {2, 4}, {3, 4}, {5, 4}}));
}

}  // namespace
