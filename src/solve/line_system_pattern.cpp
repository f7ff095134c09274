#include "solve/line_system_pattern.hpp"

#include <algorithm>
#include <initializer_list>

namespace {

// The start of every accumulation: -0 + x is x for every x, zeros included, so a place that a
// term creates ends up with exactly that term's value, as in the row-map arithmetic.
const Complex kNothing(-0.0, -0.0);

// Union of the patterns of the given matrices over rows and columns 0 .. n-1 (null matrices and
// rows beyond a matrix's end contribute nothing).
CompressedPattern UnionPattern(std::initializer_list<const SparseComplexMatrix*> matrices,
                               int64_t n) {
    CompressedPattern pattern;
    pattern.size = n;
    pattern.rowStart.reserve(static_cast<size_t>(n) + 1);
    pattern.rowStart.push_back(0);
    std::vector<int64_t> row;
    for (int64_t r = 0; r < n; ++r) {
        row.clear();
        for (const SparseComplexMatrix* m : matrices) {
            if (m == nullptr || static_cast<size_t>(r) >= m->RowCount()) continue;
            for (const auto& entry : m->rows[r]) row.push_back(entry.first);
        }
        std::sort(row.begin(), row.end());
        row.erase(std::unique(row.begin(), row.end()), row.end());
        pattern.column.insert(pattern.column.end(), row.begin(), row.end());
        pattern.rowStart.push_back(static_cast<int64_t>(pattern.column.size()));
    }
    return pattern;
}

// Place of column col in row r of the pattern, searching from position from on; -1 if absent.
int64_t FindInRow(const CompressedPattern& pattern, int64_t r, int64_t col, int64_t from) {
    const auto begin = pattern.column.begin() + std::max(from, pattern.rowStart[r]);
    const auto end = pattern.column.begin() + pattern.rowStart[r + 1];
    const auto it = std::lower_bound(begin, end, col);
    return it != end && *it == col ? it - pattern.column.begin() : -1;
}

}  // namespace

LineSystemPattern::MappedTerm LineSystemPattern::Map(const SparseComplexMatrix& matrix,
                                                     const CompressedPattern& pattern) {
    MappedTerm term;
    const size_t rows = std::min(matrix.RowCount(), static_cast<size_t>(pattern.size));
    for (size_t r = 0; r < rows; ++r) {
        int64_t from = 0;
        for (const auto& [col, value] : matrix.rows[r]) {
            from = FindInRow(pattern, static_cast<int64_t>(r), col, from);
            term.slot.push_back(from);
            term.value.push_back(value);
        }
    }
    return term;
}

LineSystemPattern::LineSystemPattern(const LineSystemTerms& terms,
                                     const SparseComplexMatrix& stiffness)
    : terms_(terms) {
    const int64_t n = static_cast<int64_t>(stiffness.RowCount());
    const SparseComplexMatrix* side = nullptr;
    if (terms.side == SideTreatment::kTransmitting) side = terms.lineMatrixPattern;
    if (terms.side == SideTreatment::kViscous) side = terms.sideViscous;

    system_ = UnionPattern({&stiffness, terms.mass, terms.baseViscous, side}, n);
    stiffness_ = Map(stiffness, system_);
    mass_ = Map(*terms.mass, system_);
    baseViscous_ = Map(*terms.baseViscous, system_);
    if (!terms.HasSideLoad()) return;
    sidePattern_ = UnionPattern({side}, n);
    loadPattern_ = UnionPattern({side, terms.sideStatic}, n);
    if (side != nullptr) {
        sideInSystem_ = Map(*side, system_);
        sideInLoad_ = Map(*side, loadPattern_);
    }
    if (terms.sideStatic != nullptr) sideStatic_ = Map(*terms.sideStatic, loadPattern_);
}

LineScratch LineSystemPattern::MakeScratch() const {
    LineScratch scratch;
    scratch.side.resize(sidePattern_.column.size());
    scratch.load.resize(loadPattern_.column.size());
    return scratch;
}

bool LineSystemPattern::LoadStiffness(const SparseComplexMatrix& stiffness) {
    if (static_cast<int64_t>(stiffness.RowCount()) != system_.size) return false;
    const std::vector<int64_t>& slot = stiffness_.slot;
    size_t e = 0;
    for (int64_t r = 0; r < system_.size; ++r) {
        for (const auto& entry : stiffness.rows[r]) {
            if (e == slot.size() || slot[e] < system_.rowStart[r] ||
                slot[e] >= system_.rowStart[r + 1] || system_.column[slot[e]] != entry.first)
                return false;
            ++e;
        }
    }
    if (e != slot.size()) return false;
    e = 0;
    for (int64_t r = 0; r < system_.size; ++r)
        for (const auto& entry : stiffness.rows[r]) stiffness_.value[e++] = entry.second;
    return true;
}

bool LineSystemPattern::FormSide(int line, double w, std::vector<Complex>& side) const {
    if (terms_.side == SideTreatment::kViscous) {
        const Complex iw(0.0, w);
        for (size_t k = 0; k < side.size(); ++k) side[k] = iw * sideInSystem_.value[k];
        return true;
    }
    if (terms_.lineValuesOverPattern) {
        // The side pattern is the line matrices' union pattern itself, in the same order.
        terms_.lineValuesOverPattern(line, side);
        return side.size() == sidePattern_.column.size();
    }
    std::fill(side.begin(), side.end(), kNothing);
    const SparseComplexMatrix E = terms_.lineMatrix(line);
    const size_t rows = std::min(E.RowCount(), static_cast<size_t>(sidePattern_.size));
    for (size_t r = 0; r < rows; ++r) {
        int64_t from = 0;
        for (const auto& [col, value] : E.rows[r]) {
            from = FindInRow(sidePattern_, static_cast<int64_t>(r), col, from);
            if (from < 0) return false;
            side[from] = value;
        }
    }
    return true;
}

bool LineSystemPattern::FormLine(int line, double w, Complex* values, Complex* boundaryLoad,
                                 LineScratch& scratch) const {
    const bool withSides = terms_.HasSideLoad();
    if (withSides && !FormSide(line, w, scratch.side)) return false;

    const size_t entries = system_.column.size();
    std::fill(values, values + entries, kNothing);
    for (size_t e = 0; e < stiffness_.slot.size(); ++e)
        values[stiffness_.slot[e]] += stiffness_.value[e];
    if (withSides) {
        const Complex factor(-w * w, 0.0);
        for (size_t e = 0; e < mass_.slot.size(); ++e)
            values[mass_.slot[e]] += factor * mass_.value[e];
    } else {
        // The difference K - (w^2 M): the real product, then its negation.
        const double factor = w * w;
        for (size_t e = 0; e < mass_.slot.size(); ++e) {
            const Complex m = mass_.value[e];
            values[mass_.slot[e]] += -Complex(factor * m.real(), factor * m.imag());
        }
    }
    const Complex iw(0.0, w);
    for (size_t e = 0; e < baseViscous_.slot.size(); ++e)
        values[baseViscous_.slot[e]] += iw * baseViscous_.value[e];
    if (!withSides) return true;

    const std::vector<Complex>& side = scratch.side;
    for (size_t k = 0; k < side.size(); ++k) values[sideInSystem_.slot[k]] += side[k];

    std::vector<Complex>& load = scratch.load;
    std::fill(load.begin(), load.end(), kNothing);
    for (size_t k = 0; k < side.size(); ++k) load[sideInLoad_.slot[k]] += side[k];
    for (size_t e = 0; e < sideStatic_.slot.size(); ++e)
        load[sideStatic_.slot[e]] += sideStatic_.value[e];
    if (boundaryLoad == nullptr) return true;
    const ComplexVector& motion = (*terms_.freeFieldMotion)[line];
    for (int64_t r = 0; r < loadPattern_.size; ++r) {
        double re = 0.0, im = 0.0;
        for (int64_t k = loadPattern_.rowStart[r]; k < loadPattern_.rowStart[r + 1]; ++k) {
            const Complex p = load[k] * motion[loadPattern_.column[k]];
            re += p.real();
            im += p.imag();
        }
        boundaryLoad[r] = Complex(re, im);
    }
    return true;
}
