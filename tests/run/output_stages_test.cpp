#include "run/output_stages.hpp"

#include "support/result_model_fixture.hpp"

namespace {

using ::testing::HasSubstr;

TEST(OutputStages, BothPathsWriteCompleteStepFilesAndTextsAndRemoveTheWorkFiles) {
    struct Path {
        bool singleStep;
        int stepFiles;
        std::string start, middle;
    };
    const Path paths[] = {
        {false, 12,
         "変位計算中\r変位計算終了\n応答加速度計算中\r応答加速度終了\n"
         "\r時刻歴ファイル出力中(Disp and Acc)\t0step\r時刻歴ファイル出力中(Disp and Acc)\t10step"
         "\r時刻歴ファイル出力終了(Disp and Acc)\t\t\t\n応力ひずみ計算中\r応力ひずみ計算終了\n"
         "\r時刻歴ファイル出力中(Stress 1/1) 0step\r時刻歴ファイル出力中(Stress 1/1) 10step"
         "\r時刻歴ファイル出力中(Strain 1/1) 0step\r時刻歴ファイル出力中(Strain 1/1) 10step"
         "\r時刻歴ファイル出力終了(Stress and Strain)\t\t\t\n"
         "最大値分布出力中\r最大値分布出力終了\n\r節点加速度データファイル出力中\t0節点",
         "\n最大値分布出力中\r最大値分布出力終了\n"},
        {true, 1,
         "変位計算中\r変位計算終了\n応答加速度計算中\r応答加速度終了\n応力ひずみ計算中"
         "\r 応力ひずみ計算中　[ 0 / 5 ] ",
         "\r応力ひずみ計算終了\n\r時刻歴ファイル出力中\t0step\r時刻歴ファイル出力終了\t\t\t\t\t\t\n"
         "最大値分布出力中\r最大値分布出力終了\n\r節点加速度データファイル出力中\t0節点"}};
    for (const Path& path : paths) {
        SCOPED_TRACE(path.singleStep ? "single step" : "per step");
        ScratchWorkingDirectory directory;
        directory.Write("dyn/.keep", "");
        directory.Write("output/.keep", "");
        CAnalysisData model = SmallModel(5, 12);  // 12 nodes, 5 elements, 12 steps
        CRunControl run("input_VARNEK.inp", "");
        run.singleStepOutput = path.singleStep;
        ::testing::internal::CaptureStdout();
        RunOutputStages(model, run, "dyn/", "output/");
        const std::string console = ::testing::internal::GetCapturedStdout();
        EXPECT_THAT(console, ::testing::StartsWith(path.start));
        EXPECT_THAT(console, HasSubstr(path.middle));
        EXPECT_THAT(console, ::testing::EndsWith("\r要素応力データファイル出力中\t4要素"
                                                 "\r要素応力データファイル出力終了\t\t\t\t\t\n"));
        const size_t lines = CountLines(directory.Read("output/output_max.inp"));
        for (int step : {0, path.stepFiles - 1}) {
            const std::string text = directory.Read(Printf("output/output%d.inp", step));
            EXPECT_EQ(CountLines(text), lines) << step;
            // The mean stress at rest is zero times a negative factor.
            EXPECT_THAT(text, HasSubstr("\n5 0.0000 0.0000 0.0000 0.0000 -0.0000 0.0000 0.8000\n"));
        }
        EXPECT_FALSE(directory.Exists(Printf("output/output%d.inp", path.stepFiles)));
        EXPECT_EQ(CountLines(directory.Read("dyn/acc12.dat")), 13u);
        EXPECT_EQ(CountLines(directory.Read("dyn/femsig5.dat")), 13u);
        EXPECT_TRUE(model.nodes.empty());  // the analysis object is cleared
    }
}

}  // namespace
