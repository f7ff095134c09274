#include "input/text_scan.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <regex>

namespace {
// "%d %d %lf %lf" by the scanner and by the C library: the same count and bit-identical fields.
void ExpectReadAsTheFormattedScan(const std::string& line) {
    int a[2] = {0, 0}, b[2] = {0, 0};
    double x[2] = {0.0, 0.0}, y[2] = {0.0, 0.0};
    FieldScanner s(line);
    int count = 0;
    for (bool converted : {s.Int(a[0]), s.Int(b[0]), s.Double(x[0]), s.Double(y[0])})
        count += converted;
    EXPECT_EQ(count,
              std::max(0, std::sscanf(line.c_str(), "%d %d %lf %lf", &a[1], &b[1], &x[1], &y[1])))
        << '"' << line << '"';
    EXPECT_EQ(a[0], a[1]) << '"' << line << '"';
    EXPECT_EQ(b[0], b[1]) << '"' << line << '"';
    EXPECT_EQ(std::memcmp(x, x + 1, sizeof(double)), 0) << '"' << line << '"';
    EXPECT_EQ(std::memcmp(y, y + 1, sizeof(double)), 0) << '"' << line << '"';
}
}  // namespace

TEST(FieldScanner, ReadsLinesAsTheFormattedScanDoes) {
    for (const char* line :
         {"", "\t+7\t-8 1e3 -0.0\r", "1 2 .5 5.", "1 2 1e 2", "1 2 0x1p3 -0X.8", "1 2 inf -NaN",
          "1 2 infinity nan(12)", "1 2 1e400 -1e-400", "1 2 4.9e-324 2.2250738585072011e-308",
          "1,2 3 4", "+-5 1 1 1", "12abc 3", "1 2 -. 5", "1 2 0x 1", "1 2 1e+ 5", "1 2 0x1p 3"})
        ExpectReadAsTheFormattedScan(line);
    std::mt19937 random(20240611);
    const std::string alphabet = "0123456789 \t.-+eExXpPinfaINFA";
    const std::regex longInt("[0-9]{10}");
    for (int n = 0; n < 20000 && !HasFailure(); ++n) {
        std::string line(random() % 24, ' ');
        for (char& c : line) c = alphabet[random() % alphabet.size()];
        // An int beyond its range is left to the implementation by the C library.
        if (!std::regex_search(line, longInt)) ExpectReadAsTheFormattedScan(line);
    }
}
