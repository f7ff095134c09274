// The direct solver behind the solve of one complex system given in 1-based compressed rows.
#pragma once

#include <complex>
#include <cstdint>
#include <vector>

// Analyses, factorises and solves A x = b once, releasing everything afterwards. Returns 0 or
// a negative failure code (-1 invalid or non-finite input, -2 out of memory, -3 ordering,
// -4 singular or inaccurate solution).
int SolveCompressedOnce(const std::vector<int32_t>& rowStart,
                        const std::vector<int32_t>& columnIndex,
                        const std::vector<std::complex<double>>& values,
                        const std::complex<double>* b, std::complex<double>* x);
