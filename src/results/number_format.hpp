// Numbers in exactly the characters of the C formats "%.Nf", "%le" and "%d", at a fraction of
// the cost of printf: the result files hold many millions of numbers.
#pragma once

#include <cstdint>

// Room that any one number written below needs ("%f" of 1e308 has 309 integer digits).
inline constexpr int kMaxNumberChars = 330;

// "%.<precision>f" of value, any precision (4, 6 and 8 the fast ones): correctly rounded (ties to
// even on the exact binary value), a minus sign whenever the sign bit is set, "inf" and "nan" as
// printf writes them. Returns the end of the written characters; no terminating zero.
char* FormatFixed(char* out, double value, int precision);

// "%le": d.dddddde+XX, at least two exponent digits.
char* FormatScientific(char* out, double value);

// "%d" (any 64-bit integer).
char* FormatInteger(char* out, int64_t value);
