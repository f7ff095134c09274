#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "input/reader_test_support.hpp"
#include "support/project_fixture.hpp"

namespace {

// One number a line, each with a label behind it.
std::string NumberFile(const std::vector<double>& values) {
    std::string text = "// material file\n";
    for (double v : values) text += std::to_string(v) + " value\n";
    return text;
}

const std::vector<double> kElastic = {5, 1.8, 1.9, 7, 100, 0.3, 0.02};
// GHE record: phi 30 degrees, c 0.01, beta 1.5 and 2.5, C values, exponent 1, hmax 0.2,
// strength divisor 1.
std::vector<double> GheRecord(double c1AtInf) {
    return {4,   1.7, 1.75, 0,       50,  0.45, 0.01, 30,  0.01,
            1.5, 2.5, 1.0,  c1AtInf, 1.0, 1.0,  1.0,  0.2, 1.0};
}

class MaterialReader : public testing::Test {
  protected:
    MaterialList Read(const std::vector<double>& values) {
        project.Write("materials.dat", NumberFile(values));
        MaterialList list;
        analysis.ReadMaterials(list, project.Path("materials.dat"));
        return list;
    }
    static std::vector<double> Join(std::vector<std::vector<double>> parts) {
        std::vector<double> all;
        for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
        return all;
    }

    ProjectFolder project;
    CAnalysisData analysis;
};

TEST_F(MaterialReader, ElasticAndGheRecordsFollowTheCount) {
    const MaterialList list = Read(Join({{2}, kElastic, GheRecord(1.000005), {99}}));
    ASSERT_EQ(list.size(), 2u);
    const DAT_Material& elastic = *list[0];
    EXPECT_EQ(elastic.type, 5);
    EXPECT_NE(dynamic_cast<const DAT_Elastic*>(&elastic), nullptr);
    EXPECT_DOUBLE_EQ(elastic.rho1, 1.8);
    EXPECT_DOUBLE_EQ(elastic.rho2, 1.9);
    EXPECT_DOUBLE_EQ(elastic.value3, 7.0);
    EXPECT_DOUBLE_EQ(elastic.G0, 100.0);
    EXPECT_DOUBLE_EQ(elastic.G, 100.0);
    EXPECT_DOUBLE_EQ(elastic.nu, 0.3);
    EXPECT_DOUBLE_EQ(elastic.h, 0.02);  // a fraction, not scaled
    // The moduli are derived on reading.
    EXPECT_DOUBLE_EQ(elastic.Gused, 100.0);
    EXPECT_DOUBLE_EQ(elastic.E, 260.0);

    const auto* ghe = dynamic_cast<const DAT_GHEmodel*>(list[1].get());
    ASSERT_NE(ghe, nullptr);
    EXPECT_EQ(ghe->type, 4);
    EXPECT_DOUBLE_EQ(ghe->phi, (30.0 / 180.0) * 3.141592653589793);
    EXPECT_DOUBLE_EQ(ghe->c, 0.01);
    EXPECT_DOUBLE_EQ(ghe->beta1, 1.5);
    EXPECT_DOUBLE_EQ(ghe->beta2, 2.5);
    EXPECT_DOUBLE_EQ(ghe->C1atInf, 1.000005);
    EXPECT_DOUBLE_EQ(ghe->hExponent, 1.0);
    EXPECT_DOUBLE_EQ(ghe->hmax, 0.2);
    EXPECT_DOUBLE_EQ(ghe->strengthDivisor, 1.0);
    EXPECT_TRUE(ghe->isHyperbolic);
}

TEST_F(MaterialReader, ACValueFartherThanTheToleranceFromOneKeepsTheCosineTerms) {
    const MaterialList list = Read(Join({{1}, GheRecord(1.00002)}));
    ASSERT_EQ(list.size(), 1u);
    EXPECT_FALSE(dynamic_cast<const DAT_GHEmodel&>(*list[0]).isHyperbolic);
}

TEST_F(MaterialReader, AnyOtherCodeIsTheTableModelWithDampingInPercent) {
    const MaterialList list =
        Read(Join({{1}, {3, 1.6, 1.6, 0, 80, 0.35, 0.05, 2}, {1e-5, 1e-3}, {1, 0.5}, {2, 25}}));
    ASSERT_EQ(list.size(), 1u);
    const auto* table = dynamic_cast<const DAT_Othermoel*>(list[0].get());
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->type, 2);
    EXPECT_DOUBLE_EQ(table->h, 0.05);
    EXPECT_EQ(table->strainTable, (std::vector<double>{1e-5, 1e-3}));
    EXPECT_EQ(table->gTable, (std::vector<double>{1.0, 0.5}));
    ASSERT_EQ(table->hTable.size(), 2u);
    EXPECT_DOUBLE_EQ(table->hTable[0], 0.02);
    EXPECT_DOUBLE_EQ(table->hTable[1], 0.25);
}

TEST_F(MaterialReader, CountOfZeroGivesAnEmptyList) {
    EXPECT_TRUE(Read({0, 5, 1}).empty());
}

using MaterialReaderDeathTest = MaterialReader;

TEST_F(MaterialReaderDeathTest, ShortRecordsStopWithStatusTwo) {
    // Lines: 1 is the comment, the numbers start on line 2.
    EXPECT_EXIT(Read(Join({{2}, kElastic, {4, 1, 1}})), testing::ExitedWithCode(2),
                "materials.dat:12: material 1 needs 18 numbers, the file ends after 3");
    EXPECT_EXIT(Read({1, 5, 1.8}), testing::ExitedWithCode(2),
                "materials.dat:4: material 0 needs 7 numbers");
    EXPECT_EXIT(Read({2, 5, 1, 1, 0, 80, 0.3, 0.05}), testing::ExitedWithCode(2),
                "materials.dat:9: material 1 needs 1 numbers, the file ends after 0");
    EXPECT_EXIT(Read(Join({{1}, {2, 1, 1, 0, 80, 0.3, 0.05, 2}, {1e-5, 1e-3, 1, 0.5, 2}})),
                testing::ExitedWithCode(2), "material 0 needs 14 numbers");
    EXPECT_EXIT(Read({}), testing::ExitedWithCode(2), "materials.dat:0: .*no number");
}

TEST_F(MaterialReaderDeathTest, TableOfFewerThanTwoRowsStops) {
    EXPECT_EXIT(Read(Join({{1}, {2, 1, 1, 0, 80, 0.3, 0.05, 1}, {1e-5, 1, 2}})),
                testing::ExitedWithCode(2), "materials.dat:10: material 0 has a table of 1 rows");
}

}  // namespace
