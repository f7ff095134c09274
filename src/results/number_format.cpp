#include "results/number_format.hpp"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr uint64_t Pow10(int n) {
    return n == 0 ? 1 : 10 * Pow10(n - 1);
}

constexpr char kDigitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

// The low `digits` decimal digits of value, with leading zeros.
template <int digits>
char* WritePadded(char* out, uint64_t value) {
    int i = digits;
    for (; i >= 2; i -= 2) {
        std::memcpy(out + i - 2, kDigitPairs + 2 * (value % 100), 2);
        value /= 100;
    }
    if (i == 1) out[0] = static_cast<char>('0' + value % 10);
    return out + digits;
}

// value rounded to `precision` decimals as an integer count of 10^-precision, for
// |value| < 2^30: value times 10^p is an exact 128-bit integer shifted right by the binary
// exponent, rounded half to even as printf rounds the exact binary value.
template <int precision>
uint64_t ScaledAndRounded(uint64_t bits) {
    const int biased = static_cast<int>((bits >> 52) & 0x7ff);
    const uint64_t fraction = bits & ((uint64_t{1} << 52) - 1);
    const uint64_t mantissa = biased == 0 ? fraction : (fraction | (uint64_t{1} << 52));
    const int shift = biased == 0 ? 1074 : 1075 - biased;  // value = mantissa / 2^shift, shift > 0
    if (shift >= 100) return 0;                            // far below half a unit

    using u128 = unsigned __int128;
    const u128 scaled = static_cast<u128>(mantissa) * Pow10(precision);  // below 2^83
    const u128 quotient = scaled >> shift;
    const u128 remainder = scaled - (quotient << shift);
    const u128 half = static_cast<u128>(1) << (shift - 1);
    uint64_t rounded = static_cast<uint64_t>(quotient);
    if (remainder > half || (remainder == half && (rounded & 1))) ++rounded;
    return rounded;
}

// The same through one double product: exact unless the product lies within its own rounding
// error of a half unit, which the exact path then decides.
template <int precision>
uint64_t QuicklyScaledAndRounded(double magnitude, uint64_t bits) {
    constexpr double kTwoTo52 = 4503599627370496.0;
    const double scaled = magnitude * static_cast<double>(Pow10(precision));
    if (scaled < kTwoTo52) {
        const double nearest = (scaled + kTwoTo52) - kTwoTo52;  // to the nearest integer
        const double distance = std::fabs(scaled - nearest);    // exact
        if (std::fabs(distance - 0.5) > scaled * 0x1p-50) return static_cast<uint64_t>(nearest);
    }
    return ScaledAndRounded<precision>(bits);
}

template <int precision>
char* FormatFixedSmall(char* out, double value) {
    const uint64_t bits = std::bit_cast<uint64_t>(value);
    const uint64_t rounded = QuicklyScaledAndRounded<precision>(std::fabs(value), bits);
    if (bits >> 63) *out++ = '-';
    const uint64_t integer = rounded / Pow10(precision);
    if (integer < 10)
        *out++ = static_cast<char>('0' + integer);
    else
        out = std::to_chars(out, out + 24, integer).ptr;
    if constexpr (precision > 0) {
        *out++ = '.';
        out = WritePadded<precision>(out, rounded % Pow10(precision));
    }
    return out;
}

}  // namespace

char* FormatFixed(char* out, double value, int precision) {
    // The exact fast path covers the magnitudes of results; the rest goes the general way.
    if (std::fabs(value) < 1073741824.0) {
        switch (precision) {
            case 4:
                return FormatFixedSmall<4>(out, value);
            case 6:
                return FormatFixedSmall<6>(out, value);
            case 8:
                return FormatFixedSmall<8>(out, value);
            default:
                break;
        }
    }
    return std::to_chars(out, out + kMaxNumberChars, value, std::chars_format::fixed, precision)
        .ptr;
}

char* FormatScientific(char* out, double value) {
    return std::to_chars(out, out + kMaxNumberChars, value, std::chars_format::scientific, 6).ptr;
}

char* FormatInteger(char* out, int64_t value) {
    return std::to_chars(out, out + 24, value).ptr;
}
