// The constant parts of the dynamic system of every frequency line, as the driver builds them
// once per run: the matrices, the side treatment and the loads.
#pragma once

#include <functional>
#include <vector>

#include "linalg/small_matrix.hpp"
#include "linalg/sparse_complex_matrix.hpp"
#include "model/side_treatment.hpp"

struct LineSystemTerms {
    // Transmitting: a side matrix of each line plus the constant side matrix; viscous: the side
    // dashpots plus the constant side matrix.
    SideTreatment side = SideTreatment::kNone;
    double duration = 0.0;  // padded length of the wave, s: line i stands for i / duration Hz
    const SparseComplexMatrix* mass = nullptr;
    const SparseComplexMatrix* baseViscous = nullptr;
    const SparseComplexMatrix* sideViscous = nullptr;  // used in mode 1
    const SparseComplexMatrix* sideStatic = nullptr;   // used in modes 0 and 1
    // Mode 0: the union of the patterns of the side matrices of all lines (values unused), and
    // the side matrix of line i. Must be safe to call from several threads at once.
    const SparseComplexMatrix* lineMatrixPattern = nullptr;
    std::function<SparseComplexMatrix(int)> lineMatrix;
    // Optional, mode 0: the values of line i's side matrix laid out along lineMatrixPattern
    // (row by row, ascending columns; zero where the line has no entry). Spares building a row
    // map per line; thread-safe like lineMatrix.
    std::function<void(int, std::vector<Complex>&)> lineValuesOverPattern;
    const std::vector<ComplexVector>* freeFieldMotion = nullptr;  // per line, over the equations
    const ComplexVector* inertiaLoad = nullptr;                   // over the degrees of freedom

    bool HasSideLoad() const { return side != SideTreatment::kNone; }
};
