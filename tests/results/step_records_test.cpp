#include "results/step_records.hpp"

#include <gtest/gtest.h>

#include <map>

#include "results/record_lines.hpp"
#include "results/result_model_fixture.hpp"

namespace {

// Records of the elements first .. first + count - 1 of a group file: all points, all steps.
std::vector<float> GroupRecords(int first, int count, int steps) {
    return Records(count, 4, steps, [first](int e, int g, int t, int i) {
        return DistinctCode(first + e, g, t, i);
    });
}

class StepRecords : public ::testing::Test {
  protected:
    ScratchWorkingDirectory directory;
    CAnalysisData model = SmallModel(4, 3);
    std::string StepFile(int step) const { return directory.Read(StepFileName("", step)); }
};

TEST_F(StepRecords, TwoBatchesWriteOneBannerAndNumberOn) {
    const std::vector<std::vector<float>> first = {GroupRecords(0, 2, 3)};
    const std::vector<std::vector<float>> second = {GroupRecords(2, 2, 3)};
    for (int step = 0; step < 3; ++step) {
        AppendStressRecords("", step, model, first, {2}, 1, 0);
        AppendStressRecords("", step, model, second, {2}, 1, 2);
    }
    const std::vector<std::string> lines = BlockLines(StepFile(1), "---- stress ----");
    EXPECT_EQ(LinesPerElement(lines), (std::map<int, int>{{1, 4}, {2, 4}, {3, 4}, {4, 4}}));
    // Element 4, point 1, step 1: the second element of the second batch.
    auto tf = [](int i) { return double{DistinctCode(3, 1, 1, i)} / 9.80665 * 1000.0; };
    EXPECT_EQ(lines[13], Printf("4 %.4lf %.4lf %.4lf %.4lf %.4lf %.4lf %.4lf", tf(0), tf(1), tf(2),
                                tf(3), tf(4), tf(5), 0.8));
    EXPECT_EQ(StepFile(1).find("---- stress ----"), StepFile(1).rfind("---- stress ----"));
}

TEST_F(StepRecords, ClosingBlocksComeOnlyWithTheLastBatch) {
    const std::vector<std::vector<float>> first = {GroupRecords(0, 2, 3)};
    AppendStrainRecords("", 0, model, first, {2}, 1, 0, false);
    EXPECT_EQ(StepFile(0).find("---- total head ----"), std::string::npos);
    EXPECT_EQ(BlockLines(StepFile(0), "---- strain ----").size(), 8u);

    const std::vector<std::vector<float>> second = {GroupRecords(2, 2, 3)};
    AppendStrainRecords("", 0, model, second, {2}, 1, 2, true);
    const std::string text = StepFile(0);
    EXPECT_EQ(BlockLines(text, "---- strain ----").size(), 16u);
    EXPECT_EQ(text.substr(text.find("---- total head ----")),
              "---- total head ----\n0\n---- fext ----\n0\n---- deviatric strain ----\n0\n"
              "---- pvsn & eq_epn ----\n0\n");
}

TEST_F(StepRecords, LineCountsFollowTheirOwnCountingRules) {
    // Stress counts the points of the running index within the batch, strain those of the index
    // within the group, both from the first element of the model.
    const std::vector<int> points = {4, 9, 4, 4};
    for (size_t e = 0; e < points.size(); ++e) model.elements[e].gaussCount = points[e];
    const std::vector<std::vector<float>> groups = {GroupRecords(0, 1, 3), GroupRecords(1, 1, 3)};
    AppendStressRecords("", 0, model, groups, {1, 1}, 2, 0);
    AppendStrainRecords("", 0, model, groups, {1, 1}, 2, 0, true);
    const std::string text = StepFile(0);
    EXPECT_EQ(LinesPerElement(BlockLines(text, "---- stress ----")),
              (std::map<int, int>{{1, 4}, {2, 9}}));
    EXPECT_EQ(LinesPerElement(BlockLines(text, "---- strain ----")),
              (std::map<int, int>{{1, 4}, {2, 4}}));

    // A later batch counts its running index from 0, without its first element.
    AppendStressRecords("", 1, model, {GroupRecords(2, 2, 3)}, {2}, 1, 2);
    EXPECT_EQ(LinesPerElement(BlockLines("----\n" + StepFile(1), "----")),
              (std::map<int, int>{{3, 4}, {4, 9}}));
}

TEST_F(StepRecords, StiffnessRatioIsThatOfTheElementsOwnMaterial) {
    auto soft = boost::shared_ptr<DAT_Material>(model.materials[0]->Clone());
    soft->G = 10.0;
    model.elements[1].material = soft;
    AppendStressRecords("", 0, model, {GroupRecords(0, 2, 3)}, {2}, 1, 0);
    const std::vector<std::string> lines = BlockLines(StepFile(0), "---- stress ----");
    EXPECT_EQ(lines[3].substr(lines[3].rfind(' ')), " 0.8000");
    EXPECT_EQ(lines[4].substr(lines[4].rfind(' ')), " 0.2000");
}

}  // namespace
