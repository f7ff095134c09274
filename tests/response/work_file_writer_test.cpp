#include "response/work_file_writer.hpp"

#include <gtest/gtest.h>

#include "support/project_fixture.hpp"

namespace {

TEST(WorkFileWriter, TruncatesAndWritesLittleEndianValuesAcrossBufferBoundaries) {
    ProjectFolder project;
    const std::string path = project.Path("w.dat");
    project.Write("w.dat", "previous contents, longer than what follows");
    {
        WorkFileWriter writer(path, 8);  // smaller than some of the writes
        writer.Put(std::array<float, 1>{1.0f});
        writer.Put(std::array<double, 1>{-2.0});
        const double block[3] = {0.5, 0.25, 0.125};
        writer.PutValues(block, 3);
        EXPECT_TRUE(writer.Good());
    }
    const std::string bytes = project.Read("w.dat");
    ASSERT_EQ(bytes.size(), 4u + 8 + 24);
    EXPECT_EQ(bytes.substr(0, 4), std::string("\x00\x00\x80\x3f", 4));
    EXPECT_EQ(bytes.substr(4, 8), std::string("\x00\x00\x00\x00\x00\x00\x00\xc0", 8));
    EXPECT_EQ(bytes.substr(28, 8), std::string("\x00\x00\x00\x00\x00\x00\xc0\x3f", 8));
}

TEST(WorkFileWriter, FailsSilentlyWhereItCannotOpen) {
    ProjectFolder project;
    WorkFileWriter nowhere(project.Path("missing/folder/x.dat"));
    nowhere.Put(std::array<float, 2>{1.0f, 2.0f});
    EXPECT_FALSE(nowhere.Good());
}

}  // namespace
