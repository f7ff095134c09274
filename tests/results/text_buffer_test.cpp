#include "results/text_buffer.hpp"

#include <gtest/gtest.h>

#include "results/result_model_fixture.hpp"

namespace {

TEST(TextBuffer, BufferSmallerThanANumberKeepsTheTextInOrderInFileAndMemory) {
    ScratchWorkingDirectory directory;
    std::string expected;
    TextBuffer memory(nullptr, 16);
    const std::string text = Written(directory, "out.txt", [&](std::FILE* file) {
        TextBuffer out(file, 16);
        for (int i = 0; i < 500; ++i) {
            const double value = -1.25 * i + 0.000123;
            const std::string end = i % 100 ? " \n" : std::string(5000, 'x');
            for (TextBuffer* buffer : {&out, &memory})
                buffer->Integer(i).Char(' ').Fixed(value, 4).Char(' ').Scientific(value).Text(end);
            expected += Printf("%d %.4f %le", i, value, value) + end;
        }
    });
    EXPECT_EQ(text, expected);
    EXPECT_EQ(memory.View(), expected);
}

}  // namespace
