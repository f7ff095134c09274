#include "element/constant_operators.hpp"

RealMatrix gVolumeOperator;
RealMatrix gDiagOperator;
ComplexMatrix gVolumeOperatorC;
ComplexMatrix gDiagOperatorC;

namespace {
template <typename T>
DenseMatrix<T> VolumeOperator() {
    DenseMatrix<T> m(4, 4);
    for (uint32_t i = 0; i < 3; ++i)
        for (uint32_t j = 0; j < 3; ++j) m(i, j) = 1.0;
    return m;
}

template <typename T>
DenseMatrix<T> DiagOperator() {
    DenseMatrix<T> m(4, 4);
    m(0, 0) = 1.0;
    m(1, 1) = 1.0;
    m(2, 2) = 1.0;
    m(3, 3) = 0.5;
    return m;
}
}  // namespace

void BuildConstantOperators() {
    gVolumeOperator = VolumeOperator<double>();
    gDiagOperator = DiagOperator<double>();
    gVolumeOperatorC = VolumeOperator<Complex>();
    gDiagOperatorC = DiagOperator<Complex>();
}
