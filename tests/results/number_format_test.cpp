#include "results/number_format.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "results/result_model_fixture.hpp"

namespace {

std::string Fixed(double value, int precision) {
    char text[kMaxNumberChars];
    return std::string(text, FormatFixed(text, value, precision));
}

std::string Scientific(double value) {
    char text[kMaxNumberChars];
    return std::string(text, FormatScientific(text, value));
}

TEST(NumberFormat, FixedGivesPrintfDigitsAcrossScalesAndPrecisions) {
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-14, 12);
    for (int i = 0; i < 200000; ++i) {
        const double value = mantissa(random) * std::pow(10.0, exponent(random));
        for (int precision : {4, 6, 8}) {
            const std::string format = "%." + std::to_string(precision) + "f";
            ASSERT_EQ(Fixed(value, precision), Printf(format.c_str(), value)) << value;
            // The double nearest a decimal half unit: the hardest case for rounding.
            const double unit = std::pow(10.0, -precision);
            const double nearTie = (std::round(value / unit) + 0.5) * unit;
            ASSERT_EQ(Fixed(nearTie, precision), Printf(format.c_str(), nearTie)) << nearTie;
        }
    }
}

TEST(NumberFormat, FixedRoundsExactTiesToEvenAndTheirNeighboursAsPrintf) {
    // 1/32, 1/128 and 1/512 are exact ties at 4, 6 and 8 decimals.
    for (double tie : {0.03125, 0.0078125, 0.001953125, 2.5, 0.125, 1e9 + 0.5}) {
        for (double value : {tie, std::nextafter(tie, 0.0), std::nextafter(tie, 10.0), -tie}) {
            for (int precision : {0, 2, 4, 6, 8}) {
                const std::string format = "%." + std::to_string(precision) + "f";
                EXPECT_EQ(Fixed(value, precision), Printf(format.c_str(), value)) << value;
            }
        }
    }
    EXPECT_EQ(Fixed(0.03125, 4), "0.0312");
    EXPECT_EQ(Fixed(0.0078125, 6), "0.007812");
}

TEST(NumberFormat, FixedKeepsTheSignOfZeroAndOfTinyNegatives) {
    EXPECT_EQ(Fixed(-0.0, 6), "-0.000000");
    EXPECT_EQ(Fixed(0.0, 4), "0.0000");
    EXPECT_EQ(Fixed(-0.00001, 4), "-0.0000");
    EXPECT_EQ(Fixed(-std::numeric_limits<double>::denorm_min(), 8), "-0.00000000");
}

TEST(NumberFormat, FixedWritesHugeAndNonFiniteValuesAsPrintf) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (double value : {1e300, -3.5e20, 2147483647.5, inf, -inf, nan, -nan})
        EXPECT_EQ(Fixed(value, 4), Printf("%.4f", value));
}

TEST(NumberFormat, ScientificHasSixDecimalsAndAtLeastTwoExponentDigits) {
    EXPECT_EQ(Scientific(0.05), "5.000000e-02");
    EXPECT_EQ(Scientific(0.0), "0.000000e+00");
    for (double value : {0.05, 1.0, -123456.789, 1e-100, 1e200, 9.9999995e-3})
        EXPECT_EQ(Scientific(value), Printf("%le", value));
}

}  // namespace
