#include "results/text_buffer.hpp"

#include <gtest/gtest.h>

#include "results/result_model_fixture.hpp"

namespace {

TEST(TextBuffer, SmallBufferPassesEverythingToItsFileInOrder) {
    std::string expected;
    const std::string text = TextWrittenBy([&](std::FILE* file) {
        TextBuffer out(file, 16);  // smaller than one number's room: flushes all the time
        const std::string longText(5000, 'x');
        for (int i = 0; i < 500; ++i) {
            const double value = -1.25 * i + 0.000123;
            out.Integer(i).Char(' ').Fixed(value, 4).Char(' ').Scientific(value).Text(" \n");
            expected += Printf("%d %.4f %le \n", i, value, value);
            if (i % 100 == 0) {
                out.Text(longText);
                expected += longText;
            }
        }
    });
    EXPECT_EQ(text, expected);
}

TEST(TextBuffer, WithoutFileTheTextGrowsInMemory) {
    TextBuffer out(nullptr, 16);
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        out.Fixed(i / 8.0, 8).Char('\n');
        expected += Printf("%.8f\n", i / 8.0);
    }
    EXPECT_EQ(out.View(), expected);
}

}  // namespace
