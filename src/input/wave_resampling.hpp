// The arithmetic of the input wave: its length on the analysis time step, the linear
// resampling of the recorded samples, the padding to a power of two and the number of
// frequency lines up to the cut-off.
#pragma once

#include <cstddef>
#include <vector>

// Number of samples on the uniform step from the start time to tEnd:
// ceil((tEnd - tStart - 1e-08) / timeStep) + 1, as a double so that the caller can see a
// length that no vector can take.
double ResampledLength(double tStart, double tEnd, double timeStep);

// Linear interpolation of the samples (times, values) onto acc[k] = a(k timeStep), with one
// running index k for all segments. Segments that begin before tStart are passed over, the
// walk stops at the first sample after tEnd, and nothing is written at or past acc.size().
// Returns false when two neighbouring samples share a time: the walk stops there and the rest
// of acc keeps its values.
bool ResampleLinear(const std::vector<double>& times, const std::vector<double>& values,
                    double timeStep, double tStart, double tEnd, std::vector<double>& acc);

// The smallest power of two not below n (n itself when it is one); n >= 1.
size_t PowerOfTwoAtLeast(size_t n);

// Lines 0, 1, ... whose frequency (i / P) / timeStep does not exceed the cut-off, counted up
// to the first that does.
int CountFrequencyLines(double cutoffFrequency, size_t paddedLength, double timeStep);
