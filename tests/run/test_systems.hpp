// Small complex systems for the tests of the sparse solve and the frequency loop.
#pragma once

#include <cstdint>
#include <vector>

#include "run/analysis_data.hpp"
#include "run/line_system_terms.hpp"
#include "run/sparse_complex_matrix.hpp"

struct TestSystem {
    SparseComplexMatrix matrix;
    std::vector<Complex> rhs;
};

// A 5 x 5 system that is unsymmetric in values and in pattern.
TestSystem UnsymmetricTestSystem();

// Solution by dense Gaussian elimination with partial pivoting.
std::vector<Complex> DenseSolve(const SparseComplexMatrix& matrix, const std::vector<Complex>& rhs);

// A matrix of n rows with about perRow entries a row at places and values drawn from seed,
// always with the diagonal; values are of order scale, with the diagonal dominant when dominant.
SparseComplexMatrix ScatteredMatrix(int n, int perRow, unsigned seed, double scale, bool dominant);

// A model without elements for the frequency loop: nodes with a few fixed degrees of freedom,
// scattered matrices for every term, side matrices per line, free-field motion, a wave spectrum.
// Duration 8 s: line i is i / 8 Hz.
class LineTestModel {
  public:
    static constexpr int kNodes = 30;
    static constexpr int kLines = 6;

    CAnalysisData analysis;
    SparseComplexMatrix stiffness, mass, baseViscous, sideViscous, sideStatic, linePattern;
    std::vector<ComplexVector> freeFieldMotion;
    ComplexVector inertiaLoad;

    LineTestModel();
    // The terms of the given side treatment.
    LineSystemTerms Terms(int sideBoundaryType) const;
    // The side matrix of a line: part of linePattern, with values that depend on the line.
    SparseComplexMatrix LineMatrix(int line) const;
    // dispX and dispY of all nodes, line after line.
    std::vector<Complex> Spectra() const;
};
