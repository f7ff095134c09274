#include "run/output_stages.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "response/work_files.hpp"
#include "results/result_model_fixture.hpp"
#include "run/platform.hpp"

namespace {

// The work files of a model at rest, as the syntheses leave them for all-zero spectra: the
// numbered sets of the groups or, without groups, the single set of one step. Stress records hold
// the mean stress (zero times a negative factor) as -0.
void WriteRestingWorkFiles(const CAnalysisData& model, const std::vector<uint32_t>& groupSizes) {
    using namespace work_files;
    const size_t nodes = model.nodes.size(), steps = model.SampleCount();
    for (const std::string& name : {kDisp, kAcc})
        WriteWords(name, std::vector<double>(nodes * steps * 2));
    for (const std::string& name : {kMaxDisp, kMaxAcc})
        WriteWords(name, std::vector<double>(nodes * 2));
    const bool grouped = !groupSizes.empty();
    for (int k = 0; k < std::max(static_cast<int>(groupSizes.size()), 1); ++k) {
        const size_t elements = grouped ? groupSizes[k] : model.elements.size();
        const size_t records = elements * 4 * (grouped ? steps : 1);
        std::vector<float> stress(records * 6);
        for (size_t r = 0; r < records; ++r) stress[r * 6 + 4] = -0.0f;
        WriteWords(grouped ? Stress(k) : kStress, stress);
        WriteWords(grouped ? Strain(k) : kStrain, std::vector<float>(records * 6));
        WriteWords(grouped ? MaxStress(k) : kMaxStress, std::vector<float>(elements * 24));
        WriteWords(grouped ? MaxStrain(k) : kMaxStrain, std::vector<float>(elements * 24));
        WriteWords(grouped ? ElementStress(k) : kElementStress,
                   std::vector<float>(elements * steps * 3));
    }
}

class OutputStages : public ::testing::Test {
  protected:
    OutputStages() {
        directory.Folder().Write("dyn/.keep", "");
        directory.Folder().Write("output/.keep", "");
    }
    std::string Run(bool singleStep) {
        CRunControl run("input_VARNEK.inp", "");
        run.singleStepOutput = singleStep;
        ::testing::internal::CaptureStdout();
        RunOutputStages(model, run, "dyn/", "output/");
        return ::testing::internal::GetCapturedStdout();
    }
    bool AnyWorkFileLeft() const {
        for (const auto& entry : std::filesystem::directory_iterator(directory.Folder().Root()))
            if (entry.path().filename().string().starts_with("work_")) return true;
        return false;
    }

    ScratchWorkingDirectory directory;
    CAnalysisData model = SmallModel(5, 12);  // 12 nodes, 5 elements, 12 steps
    // One group per worker, the remainder in the last.
    const int groupCount = std::max(1, ProcessorCount() - 1);
    std::vector<uint32_t> groupSizes = [this] {
        std::vector<uint32_t> sizes(groupCount, 5 / groupCount);
        sizes.back() += 5 % groupCount;
        return sizes;
    }();
};

TEST_F(OutputStages, PerStepPathWritesEveryStepCompleteAndRemovesTheWorkFiles) {
    WriteRestingWorkFiles(model, groupSizes);
    const std::string console = Run(false);
    const std::string expected =
        "変位計算中\r変位計算終了\n応答加速度計算中\r応答加速度終了\n"
        "\r時刻歴ファイル出力中(Disp and Acc)\t0step\r時刻歴ファイル出力中(Disp and Acc)\t10step"
        "\r時刻歴ファイル出力終了(Disp and Acc)\t\t\t\n"
        "応力ひずみ計算中\r応力ひずみ計算終了\n"
        "\r時刻歴ファイル出力中(Stress 1/1) 0step\r時刻歴ファイル出力中(Stress 1/1) 10step"
        "\r時刻歴ファイル出力中(Strain 1/1) 0step\r時刻歴ファイル出力中(Strain 1/1) 10step"
        "\r時刻歴ファイル出力終了(Stress and Strain)\t\t\t\n"
        "最大値分布出力中\r最大値分布出力終了\n"
        "\r節点加速度データファイル出力中\t0節点";
    EXPECT_EQ(console.substr(0, expected.size()), expected);
    EXPECT_TRUE(console.ends_with("\t4要素\r要素応力データファイル出力終了\t\t\t\t\t\n"));
    const size_t lines = CountLines(directory.Read("output/output_max.inp"));
    for (int step : {0, 11}) {
        const std::string text = directory.Read("output/output" + std::to_string(step) + ".inp");
        EXPECT_EQ(CountLines(text), lines) << step;
        EXPECT_NE(text.find("\n5 0.0000 0.0000 0.0000 0.0000 -0.0000 0.0000 0.8000\n"),
                  std::string::npos);
    }
    EXPECT_FALSE(directory.Exists("output/output12.inp"));
    EXPECT_EQ(CountLines(directory.Read("dyn/acc12.dat")), 13u);
    EXPECT_EQ(CountLines(directory.Read("dyn/femsig5.dat")), 13u);
    EXPECT_FALSE(AnyWorkFileLeft());
    EXPECT_TRUE(model.nodes.empty());  // the analysis object is cleared
}

TEST_F(OutputStages, SingleStepPathWritesTheFirstStepOnly) {
    WriteRestingWorkFiles(model, {});
    const std::string console = Run(true);
    EXPECT_NE(console.find("\r応力ひずみ計算終了\n"), std::string::npos);
    EXPECT_NE(console.find("\r時刻歴ファイル出力中\t0step\r時刻歴ファイル出力終了\t\t\t\t\t\t\n"
                           "最大値分布出力中\r最大値分布出力終了\n"),
              std::string::npos);
    EXPECT_TRUE(console.ends_with("\r要素応力データファイル出力終了\t\t\t\t\t\n"));
    EXPECT_EQ(CountLines(directory.Read("output/output0.inp")),
              CountLines(directory.Read("output/output_max.inp")));
    EXPECT_FALSE(directory.Exists("output/output1.inp"));
    EXPECT_TRUE(directory.Exists("dyn/femsig5.dat"));
    EXPECT_FALSE(AnyWorkFileLeft());
}

}  // namespace
