#include "results/step_model.hpp"

#include "results/model_head.hpp"
#include "support/result_model_fixture.hpp"

namespace {

using ::testing::HasSubstr;

TEST(ModelFileHead, WritesFixedBlocksFourSpareMaterialsAndOneLayoutPerNodeCount) {
    CAnalysisData model = SmallModel(1, 5);
    model.nodes.resize(8);
    model.materials.push_back(boost::make_shared<DAT_Elastic>());
    const std::vector<std::vector<int>> layouts = {
        {0, 1, 2, 3}, {0, 1, 2, 3, 4, 5}, {0, 1, 2, 3, 4, 5, 6, 7}, {0, 1, 2}};
    model.elements.resize(layouts.size(), model.elements[0]);
    for (size_t e = 0; e < layouts.size(); ++e) model.elements[e].nodes = layouts[e];
    auto head = [&](int64_t firstValue) {
        TextBuffer out;
        ModelFileHead(model).AppendBlocks(out, firstValue);
        return std::string(out.View());
    };
    const std::string non = "Non0.0000000\n0.0000000\n0.0000000\n0.0000000\n";
    const std::string elastic = "Elastic\n1.0000000\n0.0\n0.0\n0.0\n";
    EXPECT_EQ(head(7),
              " a--- ne np npar ----\n004\n4 8 1\n---- nstep0 nstep ite_limit tol ----\n"
              "7 5 10 5.000000e-02\n---- material constant ----\n6\n1 2\n2 2\n3 2\n4 2\n"
              "5 2\n6 2\n" +
                  elastic + elastic + non + non + non + non +
                  "---- couple analysis data ----\n0.37e-07\n1.0000\n"
                  "---- ie jelm ll ----\n1 4 1 1 1 2 3 4 0 0 0 0 1.00000\n"
                  "2 6 1 1 1 2 3 4 5 6 0 0 1.00000\n3 8 1 1 1 2 3 4 5 6 7 8 1.00000\n"
                  "---- node   x   y ----\n");
    model.materials.clear();
    EXPECT_THAT(head(0), HasSubstr("---- material constant ----\n4\n1 2\n2 2\n3 2\n4 2\n" + non +
                                   non + non + non + "----"));
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
        directory.Written("out.inp", [&](OutputFile& file) { WriteStepModelHead(model, 2, file); });
    EXPECT_THAT(text, HasSubstr("\n2 3 10 5.000000e-02\n"));
    // Node 5 (the second of the top row) at step 2, with the blank before the line end.
    EXPECT_THAT(text, HasSubstr(Printf("\n%d %.4f %.4f %.4f %.4f %.4f %.4f %.4f %.4f \n", 5, 1.0,
                                       0.0, 0.001 * 4 + 0.0002, -0.004, 0.0, 0.0,
                                       (0.5 * 4 + 2) * 100.0, -0.5 * 100.0)));
    EXPECT_TRUE(text.ends_with(" \n"));
}

TEST(StepModel, RecordsAreReadAtFourPointPositionsWithTheOwnMaterialsRatioAndZeroBeyond) {
    ScratchWorkingDirectory directory;
    CAnalysisData model = SmallModel(2, 1);
    model.elements[0].gaussCount = 9;
    model.elements[1].material = boost::shared_ptr<DAT_Material>(model.materials[0]->Clone());
    model.elements[1].material->G = 10.0;
    WriteWords(work_files::kStress, Records(0, 2, 1, 9));
    std::vector<float> strain = Records(0, 2, 1, 9);
    strain.resize(6 * 6);
    for (float& value : strain) value *= 1e-6f;
    WriteWords(work_files::kStrain, strain);
    // Empty node files: the node lines read zeros.
    directory.Write(work_files::kDisp, "");
    directory.Write(work_files::kAcc, "");
    const std::string text =
        directory.Written("out.inp", [&](OutputFile& file) { WriteStepModelFull(model, 0, file); });
    const std::vector<std::string> stress = BlockLines(text, "---- stress ----");
    ASSERT_EQ(stress.size(), 13u);
    EXPECT_EQ(stress[3], StressLine(1, 300));
    EXPECT_EQ(stress[9], StressLine(2, 400, 0.2));  // element 2, point 0 at record 4
    const std::vector<std::string> strainLines = BlockLines(text, "---- strain ----");
    ASSERT_EQ(strainLines.size(), 13u);
    auto x = [](float code) { return double{code * 1e-6f}; };
    EXPECT_EQ(strainLines[5], Printf("1 %.8lf %.8lf %.8lf %.8lf %.8lf %.8lf", x(500), x(501),
                                     x(502), x(503), x(504), x(505)));
    const std::string zeros = " 0.00000000 0.00000000 0.00000000 0.00000000 0.00000000 0.00000000";
    EXPECT_EQ(strainLines[6], "1" + zeros);  // records 6 and 7 lie beyond the data
    EXPECT_EQ(strainLines[12], "2" + zeros);
    EXPECT_TRUE(text.ends_with(kClosingBlocks));
}

}  // namespace
