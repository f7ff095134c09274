// Small models for the side-boundary tests: nodes on a line with some degrees of freedom fixed and
// the rest numbered, and the entries of a sparse matrix as one comparable map.
#pragma once

#include <initializer_list>
#include <map>
#include <utility>

#include "linalg/sparse_complex_matrix.hpp"
#include "model/analysis_data.hpp"
#include "solve/model_preparation.hpp"

inline CAnalysisData NumberedModel(int nodeCount, std::initializer_list<int> fixedDofs,
                                   int frequencyCount = 4) {
    CAnalysisData analysis;
    for (int p = 0; p < nodeCount; ++p) analysis.nodes.emplace_back(p, 0.0, 0.0);
    analysis.dofFixed.assign(2 * static_cast<size_t>(nodeCount), 0);
    for (int d : fixedDofs) analysis.dofFixed[static_cast<size_t>(d)] = 1;
    NumberEquations(analysis);
    analysis.frequencyCount = frequencyCount;
    return analysis;
}

using Entries = std::map<std::pair<int, int>, Complex>;

inline Entries EntriesOf(const SparseComplexMatrix& m) {
    Entries all;
    for (size_t i = 0; i < m.RowCount(); ++i)
        for (const auto& [j, v] : m.rows[i]) all[{static_cast<int>(i), j}] = v;
    return all;
}
