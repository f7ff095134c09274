#include "results/maximum_model.hpp"

#include "support/result_model_fixture.hpp"

namespace {

using ::testing::HasSubstr;

class MaximumModel : public ::testing::Test {
  protected:
    MaximumModel() {
        WriteWords(work_files::kMaxDisp, std::vector<double>{0.01, 0.02, 0.03, 0.04, 0, 0, 0, 0});
        WriteWords(work_files::kMaxAcc, std::vector<double>{1.5, 2.5, 0, 0, 0, 0, 0, 0});
        // Groups of one and two elements; the single set holds the same records.
        for (const auto& [k, first, count] : {std::tuple{0, 0, 1}, {1, 1, 2}}) {
            WriteWords(work_files::MaxStress(k), Records(first, count, 1));
            WriteWords(work_files::MaxStrain(k), Records(first, count, 1));
        }
        WriteWords(work_files::kMaxStress, Records(0, 3, 1));
        WriteWords(work_files::kMaxStrain, Records(0, 3, 1));
    }
    std::string Grouped() {
        return directory.Written("output_max.inp", [&](OutputFile& file) {
            WriteMaximumModelGrouped(model, 2, {1, 2}, file);
        });
    }

    ScratchWorkingDirectory directory;
    CAnalysisData model = SmallModel(3, 4);
};

TEST_F(MaximumModel, ShowsTheStepCountTwiceAndTheSameFromEitherRecordSet) {
    const std::string maxima = Grouped();
    EXPECT_THAT(maxima, HasSubstr("---- nstep0 nstep ite_limit tol ----\n4 4 10 5.000000e-02\n"));
    EXPECT_THAT(maxima, HasSubstr("\n1 0.0000 -1.0000 0.0100 0.0200 0.0000 0.0000 150.0000 "
                                  "250.0000 \n2 1.0000 -1.0000 0.0300 0.0400 0.0000 0.0000 0.0000 "
                                  "0.0000 \n"));
    EXPECT_EQ(maxima, directory.Written("single.inp", [&](OutputFile& file) {
        WriteMaximumModelSingle(model, file);
    }));
}

TEST_F(MaximumModel, MissingGroupFileEndsTheRunAfterHeadAndNodes) {
    std::remove(work_files::MaxStress(1).c_str());
    EXPECT_EQ(directory.ConsoleOfExit(1, [&] { Grouped(); }),
              "Error: cannot open file(work_Mstress1.dat)\n");
    const std::string text = directory.Read("output_max.inp");
    EXPECT_THAT(text, HasSubstr("\n8 3.0000 0.0000 0.0000 0.0000 0.0000 0.0000 0.0000 0.0000 \n"));
    EXPECT_TRUE(text.ends_with("---- stress ----\n"));
}

}  // namespace
