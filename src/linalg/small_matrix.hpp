// Dense matrices and vectors of the element work: small, owning, row by row.
#pragma once

#include <complex>
#include <cstdint>
#include <vector>

using Complex = std::complex<double>;

// A dense matrix stored row by row: element (i, j) at index i * cols + j.
// Creation with a size fills with zeros; copies are deep.
template <typename T>
struct DenseMatrix {
    uint32_t rows = 0;
    uint32_t cols = 0;
    std::vector<T> data;

    DenseMatrix() = default;
    DenseMatrix(uint32_t r, uint32_t c) : rows(r), cols(c), data(size_t(r) * c, T{}) {}

    T& operator()(uint32_t i, uint32_t j) { return data[size_t(i) * cols + j]; }
    const T& operator()(uint32_t i, uint32_t j) const { return data[size_t(i) * cols + j]; }
    void fill(const T& v) { std::fill(data.begin(), data.end(), v); }
};

// A dense vector: a length and a contiguous array.
template <typename T>
struct DenseVector {
    std::vector<T> data;

    DenseVector() = default;
    explicit DenseVector(size_t n) : data(n, T{}) {}
    DenseVector(std::initializer_list<T> values) : data(values) {}

    size_t size() const { return data.size(); }
    T& operator[](size_t i) { return data[i]; }
    const T& operator[](size_t i) const { return data[i]; }
    void resize(size_t n) { data.assign(n, T{}); }
    T* begin_ptr() { return data.data(); }
};

using RealMatrix = DenseMatrix<double>;
using ComplexMatrix = DenseMatrix<Complex>;
using RealVector = DenseVector<double>;
using ComplexVector = DenseVector<Complex>;

// a * A + b * B, element by element (both of one size).
ComplexMatrix ScaledSum(Complex a, const ComplexMatrix& A, Complex b, const ComplexMatrix& B);

// A x, sums taken in ascending column order.
ComplexVector Multiply(const ComplexMatrix& A, const ComplexVector& x);

// The real parts of a complex vector.
RealVector RealParts(const ComplexVector& v);

// a + b, element by element.
RealVector Add(const RealVector& a, const RealVector& b);
