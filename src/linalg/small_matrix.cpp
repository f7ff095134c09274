#include "linalg/small_matrix.hpp"

ComplexMatrix ScaledSum(Complex a, const ComplexMatrix& A, Complex b, const ComplexMatrix& B) {
    ComplexMatrix r(A.rows, A.cols);
    for (size_t k = 0; k < r.data.size(); ++k) r.data[k] = a * A.data[k] + b * B.data[k];
    return r;
}

ComplexVector Multiply(const ComplexMatrix& A, const ComplexVector& x) {
    ComplexVector r(A.rows);
    for (uint32_t i = 0; i < A.rows; ++i) {
        Complex s = 0.0;
        for (uint32_t j = 0; j < A.cols; ++j) s += A(i, j) * x[j];
        r[i] = s;
    }
    return r;
}

RealVector RealParts(const ComplexVector& v) {
    RealVector r(v.size());
    for (size_t i = 0; i < v.size(); ++i) r[i] = v[i].real();
    return r;
}

RealVector Add(const RealVector& a, const RealVector& b) {
    RealVector r(a.size());
    for (size_t i = 0; i < a.size(); ++i) r[i] = a[i] + b[i];
    return r;
}
