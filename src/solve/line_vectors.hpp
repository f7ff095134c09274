// The vectors of one frequency line around its solve: the frequencies of the line, the packed
// right-hand side, the stored solution, and the console line that reports it.
#pragma once

#include <cstdint>
#include <vector>

#include "element/point.hpp"
#include "linalg/small_matrix.hpp"

// Frequency of line i in Hz, (1 / T) i, and its circular frequency, (2 pi / T) i, for a padded
// duration T.
double LineFrequency(int line, double duration);
double LineCircularFrequency(int line, double duration);

// Number of degrees of freedom with dofFixed 0.
size_t FreeDofCount(const std::vector<int32_t>& dofFixed);

// The right-hand side inertiaLoad + b over the degrees of freedom, packed to those with dofFixed
// 0, where b is the boundary load given per equation (boundaryLoad, may be null for none) and
// expanded through equationMap, zero at the fixed places.
void PackRightHandSide(const ComplexVector& inertiaLoad, const Complex* boundaryLoad,
                       const std::vector<int32_t>& equationMap,
                       const std::vector<int32_t>& dofFixed, Complex* packed);

// Unpacks a solution over the free degrees of freedom into dispX[line], dispY[line] of every
// node; fixed degrees of freedom get 0.
void StoreLineSolution(const Complex* packed, const std::vector<int32_t>& dofFixed, int line,
                       std::vector<CNode>& nodes);

// Sizes every node's spectra to at least count lines, keeping their content.
void EnsureSpectrumLength(std::vector<CNode>& nodes, size_t count);

// "\rCalculate ... Hz : ωs = ... FFTSpc ..." on standard error, no line end.
void PrintLineProgress(int line, double duration, const ComplexVector& waveSpectrum);
