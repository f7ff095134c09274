#include "results/number_format.hpp"

#include <limits>
#include <random>

#include "results/text_buffer.hpp"
#include "support/result_model_fixture.hpp"

namespace {

TEST(NumberFormat, NumbersGiveThePrintfCharactersThroughBuffersSmallerThanOneNumber) {
    using limits = std::numeric_limits<double>;
    const double inf = limits::infinity(), nan = limits::quiet_NaN();
    std::vector<double> values = {0.0,          -0.0,        -1e-5,        -limits::denorm_min(),
                                  1e300,        -3.5e20,     2147483647.5, 1e-100,
                                  9.9999995e-3, -123456.789, inf,          -inf,
                                  nan,          -nan};
    // Exact binary ties (1/32, 1/128, 1/512 at 4, 6, 8 decimals) and their neighbours.
    for (double tie : {0.03125, 0.0078125, 0.001953125, 2.5, 0.125, 1e9 + 0.5})
        values.insert(values.end(),
                      {tie, -tie, std::nextafter(tie, 0.0), std::nextafter(tie, 9.0)});
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-14, 12);
    for (int i = 0; i < 10000; ++i) {
        const double value = mantissa(random) * std::pow(10.0, exponent(random));
        values.push_back(value);
        // The doubles nearest a decimal half unit: the hardest cases for rounding.
        for (double unit : {1e-4, 1e-6, 1e-8})
            values.push_back((std::round(value / unit) + 0.5) * unit);
    }
    ScratchWorkingDirectory directory;
    std::vector<std::string> expected = {std::string(5000, 'x')};
    TextBuffer memory(nullptr, 16);
    const std::string text = directory.Written("numbers.txt", [&](OutputFile& file) {
        TextBuffer out(&file, 16);
        for (TextBuffer* buffer : {&out, &memory}) buffer->Text(expected[0]).Char('\n');
        for (size_t i = 0; i < values.size(); ++i)
            for (int p : {0, 2, 4, 6, 8}) {
                const double v = values[i];
                const std::string format = "%zu %." + std::to_string(p) + "f %le";
                expected.push_back(Printf(format.c_str(), i, v, v));
                for (TextBuffer* b : {&out, &memory})
                    b->Integer(i).Char(' ').Fixed(v, p).Char(' ').Scientific(v).Char('\n');
            }
    });
    std::istringstream lines(text);
    std::string line;
    for (const std::string& want : expected) {
        ASSERT_TRUE(std::getline(lines, line));
        ASSERT_EQ(line, want);
    }
    EXPECT_FALSE(std::getline(lines, line));
    EXPECT_EQ(memory.View(), text);
}

}  // namespace
