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
        }
    }
}

TEST(NumberFormat, FixedRoundsExactTiesToEvenAsPrintf) {
    for (double value : {0.125, 0.375, 2.5, 0.03125, 0.00005, 1.00005, -0.00015, 1e9 + 0.5}) {
        EXPECT_EQ(Fixed(value, 2), Printf("%.2f", value));
        EXPECT_EQ(Fixed(value, 4), Printf("%.4f", value));
        EXPECT_EQ(Fixed(value, 0), Printf("%.0f", value));
    }
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
