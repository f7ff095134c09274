#include "support/reader_test_support.hpp"

namespace {

using testing::DoubleEq;
using testing::Pointwise;

// A material file of one number a line, each with a label behind it; the numbers start on line 2.
class MaterialReader : public ReaderTest {
  protected:
    MaterialList Read(const std::vector<std::vector<double>>& records) {
        std::string text = "// material file\n";
        for (const auto& record : records)
            for (double v : record) text += std::to_string(v) + " value\n";
        MaterialList list;
        ReadMaterials(list, File("materials.dat", text));
        return list;
    }
};

const std::vector<double> kElastic = {5, 1.8, 1.9, 7, 100, 0.3, 0.02};
// phi 30 degrees, c 0.01, beta 1.5 and 2.5, C values, exponent 1, hmax 0.2, divisor 1.
std::vector<double> Ghe(double c1AtInf) {
    return {4, 1.7, 1.75, 0, 50, 0.45, 0.01, 30, 0.01, 1.5, 2.5, 1, c1AtInf, 1, 1, 1, 0.2, 1};
}
// Any code but 4 and 5 is the table model; two rows of strain, G ratio and damping in percent.
const std::vector<double> kTable = {3, 1.6, 1.6, 0, 80, 0.35, 0.05, 2, 1e-5, 1e-3, 1, 0.5, 2, 25};

TEST_F(MaterialReader, RecordsFollowTheCountAtTheirPlaces) {
    const MaterialList list = Read({{3}, kElastic, Ghe(1.000005), kTable, {99}});
    ASSERT_EQ(list.size(), 3u);
    // The damping of place 7 is a fraction, not scaled; the moduli are derived on reading.
    const auto& elastic = dynamic_cast<const DAT_Elastic&>(*list[0]);
    EXPECT_THAT((std::vector<double>{1.0 * static_cast<int>(elastic.type), elastic.rho1,
                                     elastic.rho2, elastic.value3, elastic.G0, elastic.G,
                                     elastic.nu, elastic.h, elastic.Gused, elastic.E}),
                Pointwise(DoubleEq(), {5.0, 1.8, 1.9, 7.0, 100.0, 100.0, 0.3, 0.02, 100.0, 260.0}));
    const auto& ghe = dynamic_cast<const DAT_GHEmodel&>(*list[1]);
    EXPECT_THAT(
        (std::vector<double>{1.0 * static_cast<int>(ghe.type), ghe.phi, ghe.c, ghe.beta1, ghe.beta2,
                             ghe.C1atInf, ghe.hExponent, ghe.hmax, ghe.strengthDivisor}),
        Pointwise(DoubleEq(),
                  {4.0, 30.0 / 180.0 * std::numbers::pi, 0.01, 1.5, 2.5, 1.000005, 1.0, 0.2, 1.0}));
    const auto& table = dynamic_cast<const DAT_Othermoel&>(*list[2]);
    EXPECT_EQ(table.type, MaterialModel::kTable);
    EXPECT_DOUBLE_EQ(table.h, 0.05);
    EXPECT_EQ(table.strainTable, (std::vector<double>{1e-5, 1e-3}));
    EXPECT_EQ(table.gTable, (std::vector<double>{1.0, 0.5}));
    EXPECT_THAT(table.hTable, Pointwise(DoubleEq(), {0.02, 0.25}));
    // Every C value within 1e-5 of one makes the plain hyperbola.
    EXPECT_TRUE(ghe.isHyperbolic);
    EXPECT_FALSE(dynamic_cast<const DAT_GHEmodel&>(*Read({{1}, Ghe(1.00002)})[0]).isHyperbolic);
    EXPECT_TRUE(Read({{0}, kElastic}).empty());
}

using MaterialReaderDeathTest = MaterialReader;

TEST_F(MaterialReaderDeathTest, ShortRecordsStopWithStatusTwo) {
    const std::pair<std::vector<std::vector<double>>, const char*> cases[] = {
        {{{2}, kElastic, {4, 1, 1}},
         "materials.dat:12: material 1 needs 18 numbers, the file ends after 3"},
        {{{1, 5, 1.8}}, "materials.dat:4: material 0 needs 7 numbers"},
        {{{2, 5, 1, 1, 0, 80, 0.3, 0.05}},
         "materials.dat:9: material 1 needs 1 numbers, the file ends after 0"},
        {{{1, 2, 1, 1, 0, 80, 0.3, 0.05, 2, 1e-5, 1e-3, 1, 0.5, 2}}, "material 0 needs 14 numbers"},
        {{{1, 2, 1, 1, 0, 80, 0.3, 0.05, 1, 1e-5, 1, 2}},
         "materials.dat:10: material 0 has a table of 1 rows"},
        {{}, "materials.dat:0: .*no number"},
    };
    for (const auto& [records, message] : cases) ExpectStop([&] { Read(records); }, 2, message);
}

}  // namespace
