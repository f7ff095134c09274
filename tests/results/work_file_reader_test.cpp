#include "results/work_file_reader.hpp"

#include "support/result_model_fixture.hpp"

namespace {

TEST(WorkFileReader, EmptyFilesAndReadsBeyondTheEndGiveZeros) {
    ScratchWorkingDirectory directory;
    directory.Write("empty.dat", "");
    WriteWords("two.dat", std::vector<float>{1.5f, -2.0f});

    EXPECT_EQ(LoadFloatWords("empty.dat"), std::vector<float>{});
    const WorkFileReader empty("empty.dat");
    EXPECT_EQ(empty.ReadArray<double>(0, 0), std::vector<double>{});
    EXPECT_EQ(empty.ReadArray<float>(8, 2), (std::vector<float>{0.0f, 0.0f}));
    const WorkFileReader two("two.dat");
    EXPECT_EQ(two.ReadArray<float>(4, 3), (std::vector<float>{-2.0f, 0.0f, 0.0f}));
    EXPECT_EQ(LoadFloatWords("absent.dat"), std::nullopt);
}

}  // namespace
