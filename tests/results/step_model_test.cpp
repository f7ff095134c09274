#include "results/step_model.hpp"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "response/work_files.hpp"
#include "results/model_head.hpp"
#include "results/result_model_fixture.hpp"

namespace {

std::string HeadBlocks(const CAnalysisData& model, int64_t firstValue) {
    TextBuffer out;
    ModelFileHead(model).AppendBlocks(out, firstValue);
    return std::string(out.View());
}

const std::string kNonBlock = "Non0.0000000\n0.0000000\n0.0000000\n0.0000000\n";

TEST(ModelFileHead, MixedMeshWritesFixedBlocksAndOneLayoutPerNodeCount) {
    CAnalysisData model = SmallModel(1, 5);
    model.nodes.resize(8);
    model.materials.push_back(boost::make_shared<DAT_Elastic>());
    const std::vector<std::vector<int>> layouts = {
        {0, 1, 2, 3}, {0, 1, 2, 3, 4, 5}, {0, 1, 2, 3, 4, 5, 6, 7}, {0, 1, 2}};
    model.elements.resize(layouts.size(), model.elements[0]);
    for (size_t e = 0; e < layouts.size(); ++e) model.elements[e].nodes = layouts[e];

    std::string nonLines;
    for (int i = 0; i < 4; ++i) nonLines += kNonBlock;
    const std::string elastic = "Elastic\n1.0000000\n0.0\n0.0\n0.0\n";
    EXPECT_EQ(HeadBlocks(model, 7),
              " a--- ne np npar ----\n004\n4 8 1\n"
              "---- nstep0 nstep ite_limit tol ----\n7 5 10 5.000000e-02\n"
              "---- material constant ----\n6\n1 2\n2 2\n3 2\n4 2\n5 2\n6 2\n" +
                  elastic + elastic + nonLines +
                  "---- couple analysis data ----\n0.37e-07\n1.0000\n"
                  "---- ie jelm ll ----\n"
                  "1 4 1 1 1 2 3 4 0 0 0 0 1.00000\n"
                  "2 6 1 1 1 2 3 4 5 6 0 0 1.00000\n"
                  "3 8 1 1 1 2 3 4 5 6 7 8 1.00000\n"
                  "---- node   x   y ----\n");
}

TEST(ModelFileHead, ModelWithoutMaterialsStillWritesFourSpareOnes) {
    CAnalysisData model = SmallModel(1, 5);
    model.materials.clear();
    const std::string text = HeadBlocks(model, 0);
    EXPECT_NE(text.find("---- material constant ----\n4\n1 2\n2 2\n3 2\n4 2\n" + kNonBlock),
              std::string::npos);
}

TEST(StepModel, NodeLinesCarryTheStepsMotionWithAccelerationInGal) {
    ScratchWorkingDirectory directory;
    const CAnalysisData model = SmallModel(2, 3);  // 6 nodes, 3 steps
    std::vector<double> disp, acc;
    for (int n = 0; n < 6; ++n)
        for (int t = 0; t < 3; ++t) {
            disp.insert(disp.end(), {0.001 * n + 0.0001 * t, -0.002 * t});
            acc.insert(acc.end(), {0.5 * n + t, -0.25 * t});
        }
    WriteWords(work_files::kDisp, disp);
    WriteWords(work_files::kAcc, acc);

    const std::string text =
        TextWrittenBy([&](std::FILE* file) { WriteStepModelHead(model, 2, file); });
    EXPECT_NE(text.find("\n2 3 10 5.000000e-02\n"), std::string::npos);
    // Node 5 (the second of the top row) at step 2, with the blank before the line end.
    EXPECT_EQ(LineStartingWith(text, "5 1.0000 ") + "\n",
              Printf("%d %.4f %.4f %.4f %.4f %.4f %.4f %.4f %.4f \n", 5, 1.0, 0.0,
                     0.001 * 4 + 0.0002, -0.004, 0.0, 0.0, (0.5 * 4 + 2) * 100.0, -0.5 * 100.0));
    EXPECT_EQ(text.substr(text.size() - 2), " \n");
}

TEST(StepModel, FullStepFileConvertsRecordsAndCloses) {
    ScratchWorkingDirectory directory;
    const CAnalysisData model = SmallModel(2, 3);
    WriteWords(work_files::kStress, Records(2, 4, 1, DistinctCode));
    WriteWords(work_files::kStrain, Records(2, 4, 1, [](int e, int g, int, int i) {
                   return 1e-4f * static_cast<float>(10 * e + g) + 1e-6f * static_cast<float>(i);
               }));

    const std::string text =
        TextWrittenBy([&](std::FILE* file) { WriteStepModelFull(model, 0, file); });
    const std::vector<std::string> stress = BlockLines(text, "---- stress ----");
    ASSERT_EQ(stress.size(), 8u);
    auto tf = [](int e, int g, int i) {
        return double{DistinctCode(e, g, 0, i)} / 9.80665 * 1000.0;
    };
    EXPECT_EQ(stress[6] + "\n",
              Printf("%d %.4lf %.4lf %.4lf %.4lf %.4lf %.4lf %.4lf\n", 2, tf(1, 2, 0), tf(1, 2, 1),
                     tf(1, 2, 2), tf(1, 2, 3), tf(1, 2, 4), tf(1, 2, 5), 0.8));
    const std::vector<std::string> strain = BlockLines(text, "---- strain ----");
    ASSERT_EQ(strain.size(), 8u);
    const float x = 1e-4f * 13.0f;
    EXPECT_EQ(strain[7] + "\n",
              Printf("%d %.8lf %.8lf %.8lf %.8lf %.8lf %.8lf\n", 2, double{x}, double{x + 1e-6f},
                     double{x + 2e-6f}, double{x + 3e-6f}, double{x + 4e-6f}, double{x + 5e-6f}));
    EXPECT_NE(text.find("---- strain ----"), std::string::npos);
    const std::string closing =
        "---- total head ----\n0\n---- fext ----\n0\n---- deviatric strain ----\n0\n"
        "---- pvsn & eq_epn ----\n0\n";
    EXPECT_EQ(text.substr(text.size() - closing.size()), closing);
}

TEST(StepModel, NinePointElementsAreReadAtFourPointPositionsAndZeroBeyondTheData) {
    ScratchWorkingDirectory directory;
    CAnalysisData model = SmallModel(2, 1);
    for (CElement& element : model.elements) element.gaussCount = 9;
    // Element 0's nine records and only one of element 1.
    WriteWords(work_files::kStress, Records(2, 9, 1, DistinctCode));
    std::vector<float> strain = Records(2, 9, 1, DistinctCode);
    strain.resize(10 * 6);
    WriteWords(work_files::kStrain, strain);

    const std::string text =
        TextWrittenBy([&](std::FILE* file) { WriteStepModelFull(model, 0, file); });
    const std::vector<std::string> stress = BlockLines(text, "---- stress ----");
    ASSERT_EQ(stress.size(), 18u);
    // Element 2, point 0 lies at record 4: point 4 of element 1.
    auto tf = [](int i) { return (400.0 + i) / 9.80665 * 1000.0; };
    EXPECT_EQ(stress[9], Printf("2 %.4lf %.4lf %.4lf %.4lf %.4lf %.4lf %.4lf", tf(0), tf(1), tf(2),
                                tf(3), tf(4), tf(5), 0.8));
    const std::vector<std::string> strainLines = BlockLines(text, "---- strain ----");
    EXPECT_EQ(strainLines[9 + 5], Printf("2 %.8lf %.8lf %.8lf %.8lf %.8lf %.8lf", 1000.0, 1001.0,
                                         1002.0, 1003.0, 1004.0, 1005.0));
    EXPECT_EQ(strainLines[9 + 6],
              "2 0.00000000 0.00000000 0.00000000 0.00000000 0.00000000 "
              "0.00000000");
}

TEST(StepModel, StepFilesAreNamedByTheStepFromZero) {
    ScratchWorkingDirectory directory;
    const CAnalysisData model = SmallModel(1, 3);
    directory.Folder().Write("out/.keep", "");
    WriteFullStepFiles(model, "out/", 1);
    EXPECT_TRUE(directory.Exists("out/output0.inp"));
    WriteStepHeadFiles(model, "out/", 3);
    EXPECT_TRUE(directory.Exists("out/output2.inp"));
    EXPECT_FALSE(directory.Exists("out/output3.inp"));
    // Missing work files leave zero motion.
    EXPECT_EQ(LineStartingWith(directory.Read("out/output2.inp"), "4 1.0000 0.0000 "),
              "4 1.0000 0.0000 0.0000 0.0000 0.0000 0.0000 0.0000 0.0000 ");
}

}  // namespace
