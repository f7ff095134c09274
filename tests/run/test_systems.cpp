#include "run/test_systems.hpp"

#include <cmath>
#include <random>
#include <utility>

TestSystem UnsymmetricTestSystem() {
    TestSystem s{SparseComplexMatrix(5), {}};
    SparseComplexMatrix& a = s.matrix;
    a.add(0, 0, Complex(4.0, 1.0));
    a.add(0, 1, Complex(1.0, -2.0));
    a.add(0, 3, 0.5);
    a.add(1, 0, Complex(-1.0, 0.5));
    a.add(1, 1, 3.0);
    a.add(1, 2, Complex(0.0, 2.0));
    a.add(2, 1, 1.0);
    a.add(2, 2, Complex(5.0, -1.0));
    a.add(2, 4, -2.0);
    a.add(3, 3, Complex(2.0, 2.0));
    a.add(3, 4, 1.0);
    a.add(4, 0, Complex(0.0, 3.0));
    a.add(4, 2, Complex(1.0, 1.0));
    a.add(4, 4, 6.0);
    s.rhs = {Complex(1.0, 0.0), Complex(0.0, 1.0), Complex(-2.0, 0.5), Complex(3.0, 0.0),
             Complex(0.25, -1.0)};
    return s;
}

std::vector<Complex> DenseSolve(const SparseComplexMatrix& matrix,
                                const std::vector<Complex>& rhs) {
    const size_t n = matrix.RowCount();
    std::vector<std::vector<Complex>> a(n, std::vector<Complex>(n + 1));
    for (size_t i = 0; i < n; ++i) {
        for (const auto& [j, v] : matrix.rows[i]) a[i][j] = v;
        a[i][n] = rhs[i];
    }
    for (size_t k = 0; k < n; ++k) {
        size_t pivot = k;
        for (size_t i = k + 1; i < n; ++i)
            if (std::abs(a[i][k]) > std::abs(a[pivot][k])) pivot = i;
        std::swap(a[k], a[pivot]);
        for (size_t i = k + 1; i < n; ++i) {
            const Complex f = a[i][k] / a[k][k];
            for (size_t j = k; j <= n; ++j) a[i][j] -= f * a[k][j];
        }
    }
    std::vector<Complex> x(n);
    for (size_t i = n; i-- > 0;) {
        Complex s = a[i][n];
        for (size_t j = i + 1; j < n; ++j) s -= a[i][j] * x[j];
        x[i] = s / a[i][i];
    }
    return x;
}

SparseComplexMatrix ScatteredMatrix(int n, int perRow, unsigned seed, double scale, bool dominant) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> column(0, n - 1);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    SparseComplexMatrix m(static_cast<size_t>(n));
    for (int r = 0; r < n; ++r) {
        m.add(r, r,
              Complex(scale * (dominant ? 4.0 * perRow : value(random)), scale * value(random)));
        for (int k = 1; k < perRow; ++k)
            m.add(r, column(random), Complex(scale * value(random), scale * value(random)));
    }
    return m;
}

LineTestModel::LineTestModel() {
    analysis.nodes.resize(kNodes);
    analysis.dofFixed.assign(2 * kNodes, 0);
    for (int d : {0, 1, 7, 30}) analysis.dofFixed[d] = 1;
    int32_t next = 0;
    for (int32_t fixed : analysis.dofFixed) analysis.equationMap.push_back(fixed ? -1 : next++);
    analysis.freeDofCount = next;
    analysis.frequencyCount = kLines;
    analysis.waveSpectrum.resize(16);
    for (size_t k = 0; k < 16; ++k) analysis.waveSpectrum[k] = Complex(0.1 * k, -0.05 * k);
    analysis.waveSpectrum[2] = Complex(0.3, 0.4);

    const int n = analysis.freeDofCount;
    stiffness = ScatteredMatrix(n, 5, 1, 100.0, true);
    mass = ScatteredMatrix(n, 3, 2, 0.01, false);
    mass.add(3, 40, Complex(0.0, 0.0));    // a stored zero
    mass.add(4, 41, Complex(-0.0, -0.0));  // and a negative one
    baseViscous = ScatteredMatrix(n, 2, 3, 1.0, false);
    sideViscous = ScatteredMatrix(n, 2, 4, 1.0, false);
    sideStatic = ScatteredMatrix(n, 2, 5, 10.0, false);
    linePattern = ScatteredMatrix(n, 3, 6, 10.0, false);
    freeFieldMotion.assign(kLines, ComplexVector(static_cast<size_t>(n)));
    for (int i = 0; i < kLines; ++i)
        for (int k = 0; k < n; ++k) freeFieldMotion[i][k] = Complex(0.01 * (k % 7) + i, -0.02 * k);
    inertiaLoad.resize(2 * kNodes);
    for (size_t d = 0; d < inertiaLoad.size(); d += 2)
        inertiaLoad[d] = Complex(-1.0 - 0.1 * d, 0.0);
}

LineSystemTerms LineTestModel::Terms(int sideBoundaryType) const {
    LineSystemTerms terms;
    terms.sideBoundaryType = sideBoundaryType;
    terms.duration = 8.0;
    terms.mass = &mass;
    terms.baseViscous = &baseViscous;
    terms.sideViscous = &sideViscous;
    terms.sideStatic = &sideStatic;
    terms.lineMatrixPattern = &linePattern;
    terms.lineMatrix = [this](int line) { return LineMatrix(line); };
    terms.freeFieldMotion = &freeFieldMotion;
    terms.inertiaLoad = &inertiaLoad;
    return terms;
}

SparseComplexMatrix LineTestModel::LineMatrix(int line) const {
    SparseComplexMatrix m(linePattern.RowCount());
    for (size_t r = 0; r < linePattern.RowCount(); ++r)
        for (const auto& [c, v] : linePattern.rows[r])
            if ((r + static_cast<size_t>(c) + static_cast<size_t>(line)) % 3 != 0)
                m.add(static_cast<int32_t>(r), c, v * Complex(1.0 + 0.1 * line, 0.2));
    return m;
}

std::vector<Complex> LineTestModel::Spectra() const {
    std::vector<Complex> all;
    for (const CNode& node : analysis.nodes) {
        all.insert(all.end(), node.dispX.data.begin(), node.dispX.data.end());
        all.insert(all.end(), node.dispY.data.begin(), node.dispY.data.end());
    }
    return all;
}
