#include "results/number_format.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "results/result_model_fixture.hpp"

namespace {

TEST(NumberFormat, FixedAndScientificGiveThePrintfCharacters) {
    using limits = std::numeric_limits<double>;
    std::vector<double> finite = {0.0,          -0.0,       -1e-5,        -limits::denorm_min(),
                                  1e300,        -3.5e20,    2147483647.5, 1e-100,
                                  9.9999995e-3, -123456.789};
    // Exact binary ties (1/32, 1/128, 1/512 at 4, 6, 8 decimals) and their neighbours.
    for (double tie : {0.03125, 0.0078125, 0.001953125, 2.5, 0.125, 1e9 + 0.5})
        finite.insert(finite.end(),
                      {tie, -tie, std::nextafter(tie, 0.0), std::nextafter(tie, 9.0)});
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-14, 12);
    for (int i = 0; i < 10000; ++i) {
        const double value = mantissa(random) * std::pow(10.0, exponent(random));
        finite.push_back(value);
        // The doubles nearest a decimal half unit: the hardest cases for rounding.
        for (double unit : {1e-4, 1e-6, 1e-8})
            finite.push_back((std::round(value / unit) + 0.5) * unit);
    }
    char text[kMaxNumberChars];
    for (double value : finite) {
        ASSERT_EQ(std::string(text, FormatScientific(text, value)), Printf("%le", value)) << value;
        for (int precision : {0, 2, 4, 6, 8}) {
            const std::string format = "%." + std::to_string(precision) + "f";
            ASSERT_EQ(std::string(text, FormatFixed(text, value, precision)),
                      Printf(format.c_str(), value))
                << value;
        }
    }
    for (double value :
         {limits::infinity(), -limits::infinity(), limits::quiet_NaN(), -limits::quiet_NaN()})
        EXPECT_EQ(std::string(text, FormatFixed(text, value, 4)), Printf("%.4f", value));
}

}  // namespace
