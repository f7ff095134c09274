#include "linalg/sparse_complex_matrix.hpp"

#include <cstdio>
#include <mutex>

#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "linalg/sparse_solver.hpp"

size_t SparseComplexMatrix::EntryCount() const {
    size_t n = 0;
    for (const auto& r : rows) n += r.size();
    return n;
}

void SparseComplexMatrix::reset(size_t rowCount) {
    solution.clear();
    rowStart.clear();
    columnIndex.clear();
    values.clear();
    rows.resize(rowCount);
}

void SparseComplexMatrix::add(int32_t i, int32_t j, Complex value) {
    auto [it, inserted] = rows[i].try_emplace(j, value);
    if (!inserted) it->second += value;
}

void SparseComplexMatrix::Compress() {
    rowStart.clear();
    columnIndex.clear();
    values.clear();
    solution.clear();
    rowStart.reserve(rows.size() + 1);
    for (const auto& row : rows) {
        rowStart.push_back(static_cast<int32_t>(values.size()) + 1);
        for (const auto& [col, v] : row) {
            columnIndex.push_back(col + 1);
            values.push_back(v);
        }
    }
    rowStart.push_back(static_cast<int32_t>(values.size()) + 1);
}

int SparseComplexMatrix::solve(Complex* b) {
    Compress();
    const int64_t n = static_cast<int64_t>(rowStart.size()) - 1;
    if (n <= 0) return -1;
    solution.assign(static_cast<size_t>(n), Complex(0.0, 0.0));
    const int status = SolveCompressedOnce(rowStart, columnIndex, values, b, solution.data());
    if (status == 0) std::copy(solution.begin(), solution.end(), b);
    return status;
}

SparseComplexMatrix operator*(Complex c, const SparseComplexMatrix& A) {
    SparseComplexMatrix r(A.RowCount());
    for (size_t i = 0; i < A.rows.size(); ++i)
        for (const auto& [j, v] : A.rows[i]) r.rows[i].emplace_hint(r.rows[i].end(), j, c * v);
    return r;
}

SparseComplexMatrix operator*(double c, const SparseComplexMatrix& A) {
    SparseComplexMatrix r(A.RowCount());
    for (size_t i = 0; i < A.rows.size(); ++i)
        for (const auto& [j, v] : A.rows[i])
            r.rows[i].emplace_hint(r.rows[i].end(), j, Complex(c * v.real(), c * v.imag()));
    return r;
}

namespace {
SparseComplexMatrix SumWithSign(const SparseComplexMatrix& A, const SparseComplexMatrix& B,
                                double sign) {
    SparseComplexMatrix r(A.RowCount());
    for (size_t i = 0; i < A.rows.size(); ++i) r.rows[i] = A.rows[i];
    for (size_t i = 0; i < B.rows.size() && i < r.rows.size(); ++i)
        for (const auto& [j, v] : B.rows[i]) r.add(static_cast<int32_t>(i), j, sign < 0 ? -v : v);
    return r;
}
}  // namespace

SparseComplexMatrix operator+(const SparseComplexMatrix& A, const SparseComplexMatrix& B) {
    return SumWithSign(A, B, 1.0);
}

SparseComplexMatrix operator-(const SparseComplexMatrix& A, const SparseComplexMatrix& B) {
    return SumWithSign(A, B, -1.0);
}

ComplexVector operator*(const SparseComplexMatrix& A, const ComplexVector& x) {
    ComplexVector r(A.RowCount());
    for (size_t i = 0; i < A.rows.size(); ++i) {
        double re = 0.0, im = 0.0;
        for (const auto& [j, v] : A.rows[i]) {
            const Complex p = v * x[j];
            re += p.real();
            im += p.imag();
        }
        r[i] = Complex(re, im);
    }
    return r;
}

const char* SolveErrorText(int code) {
    static const char* const kTexts[] = {
        "正常です",
        "入力に矛盾があります",
        "メモリが足りません",
        "行列の並び替え処理に問題があります",
        "0 pivotがあります。factorizationが問題です",
        "内部エラー",
        "前処理の並び替えに失敗",
        "対角行列問題",
    };
    if (code > 0 || code < -7) return "";
    return kTexts[-code];
}

std::string SolveFailureMessage(int code) {
    return std::string(SolveErrorText(code)) + "Solve Error : " + std::to_string(code) +
           " 開発元にご連絡下さい\n";
}
