#include "results/number_format.hpp"

#include <bit>
#include <charconv>
#include <cmath>

namespace {

constexpr uint64_t kPow10[] = {1,      10,      100,      1000,      10000,
                               100000, 1000000, 10000000, 100000000, 1000000000};

// Writes the low `digits` decimal digits of value, with leading zeros.
char* WritePadded(char* out, uint64_t value, int digits) {
    for (int i = digits - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    return out + digits;
}

}  // namespace

char* FormatFixed(char* out, double value, int precision) {
    // Fast exact path for the magnitudes of results: with |value| < 2^30 the value times 10^p is
    // an exact 128-bit integer shifted right by the binary exponent, rounded half to even.
    const double magnitude = std::fabs(value);
    if (!(magnitude < 1073741824.0) || precision < 0 || precision > 9) {
        return std::to_chars(out, out + kMaxNumberChars, value, std::chars_format::fixed, precision)
            .ptr;
    }
    const uint64_t bits = std::bit_cast<uint64_t>(value);
    const int biased = static_cast<int>((bits >> 52) & 0x7ff);
    const uint64_t fraction = bits & ((uint64_t{1} << 52) - 1);
    const uint64_t mantissa = biased == 0 ? fraction : (fraction | (uint64_t{1} << 52));
    const int shift = biased == 0 ? 1074 : 1075 - biased;  // value = mantissa / 2^shift, shift > 0

    using u128 = unsigned __int128;
    const u128 scaled = static_cast<u128>(mantissa) * kPow10[precision];  // below 2^83
    uint64_t rounded = 0;
    if (shift < 100) {
        const u128 quotient = scaled >> shift;
        const u128 remainder = scaled - (quotient << shift);
        const u128 half = static_cast<u128>(1) << (shift - 1);
        rounded = static_cast<uint64_t>(quotient);
        if (remainder > half || (remainder == half && (rounded & 1))) ++rounded;
    }
    if (bits >> 63) *out++ = '-';
    out = std::to_chars(out, out + 24, rounded / kPow10[precision]).ptr;
    if (precision > 0) {
        *out++ = '.';
        out = WritePadded(out, rounded % kPow10[precision], precision);
    }
    return out;
}

char* FormatScientific(char* out, double value) {
    return std::to_chars(out, out + kMaxNumberChars, value, std::chars_format::scientific, 6).ptr;
}

char* FormatInteger(char* out, int64_t value) {
    return std::to_chars(out, out + 24, value).ptr;
}
