#include "boundary/text_scan.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <regex>

namespace {
// The four fields of "%d %d %lf %lf" and how many were converted, by both readers.
struct Fields {
    int count = 0;
    int a = 0, b = 0;
    double x = 0.0, y = 0.0;
};

Fields ByScanner(const std::string& line) {
    Fields f;
    FieldScanner s(line);
    const bool converted[] = {s.Int(f.a), s.Int(f.b), s.Double(f.x), s.Double(f.y)};
    for (bool c : converted) f.count += c;
    return f;
}

Fields ByCLibrary(const std::string& line) {
    Fields f;
    f.count = std::max(0, std::sscanf(line.c_str(), "%d %d %lf %lf", &f.a, &f.b, &f.x, &f.y));
    return f;
}

void ExpectSameFields(const std::string& line) {
    const Fields mine = ByScanner(line), theirs = ByCLibrary(line);
    EXPECT_EQ(mine.count, theirs.count) << '"' << line << '"';
    EXPECT_EQ(mine.a, theirs.a) << '"' << line << '"';
    EXPECT_EQ(mine.b, theirs.b) << '"' << line << '"';
    // Bit for bit, NaNs and signed zeros included.
    EXPECT_EQ(std::memcmp(&mine.x, &theirs.x, sizeof(double)), 0) << '"' << line << '"';
    EXPECT_EQ(std::memcmp(&mine.y, &theirs.y, sizeof(double)), 0) << '"' << line << '"';
}
}  // namespace

TEST(FieldScanner, ReadsLinesAsTheFormattedScanDoes) {
    for (const char* line : {"",
                             "   ",
                             "12 34 1.5 -2.5",
                             "\t+7\t-8 1e3 -0.0\r",
                             "1 2 .5 5.",
                             "1 2 1e 2",
                             "1 2 0x1p3 -0X.8",
                             "1 2 inf -NaN",
                             "1 2 infinity nan(12)",
                             "1 2 1e400 -1e-400",
                             "1 2 4.9e-324 2.2250738585072011e-308",
                             "1,2 3 4",
                             "1 x 3 4",
                             "-5",
                             "+-5 1 1 1",
                             "- 5",
                             "12abc 3",
                             "1 2 3.0000000000000000000001 4",
                             "1 2 + 5",
                             "1 2 -. 5",
                             "1 2 0x 1",
                             "1 2 0.1e+2 7e-1",
                             "1 2 1e+ 5",
                             "1 2 0x1p 3",
                             "1 2 inf e"})
        ExpectSameFields(line);
}

TEST(FieldScanner, RandomLinesReadAsTheFormattedScanDoes) {
    std::mt19937 random(20240611);
    const std::string alphabet = "0123456789 \t.-+eExXpPinfaINFA";
    for (int n = 0; n < 20000; ++n) {
        std::string line(random() % 24, ' ');
        for (char& c : line) c = alphabet[random() % alphabet.size()];
        // An int beyond its range is left to the implementation by the C library.
        if (std::regex_search(line, std::regex("[0-9]{10}"))) continue;
        ExpectSameFields(line);
        if (HasFailure()) break;
    }
}

TEST(LineCursor, SplitsAtLineEndsAsLineByLineReadingDoes) {
    const auto lines = [](const std::string& text) {
        std::vector<std::string> out;
        LineCursor cursor(text);
        std::string_view line;
        while (cursor.Next(line)) out.emplace_back(line);
        return out;
    };
    EXPECT_EQ(lines(""), std::vector<std::string>{});
    EXPECT_EQ(lines("a\n"), std::vector<std::string>{"a"});
    EXPECT_EQ(lines("a\n\nb"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(lines("a\r\n\n"), (std::vector<std::string>{"a\r", ""}));
}
