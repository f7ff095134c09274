// Small models for the side-boundary tests: a node list with some degrees of freedom fixed and
// the equations numbered, plus helpers that compare sparse matrices exactly.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <regex>
#include <string>

#include "run/analysis_data.hpp"
#include "run/sparse_complex_matrix.hpp"

// nodeCount nodes on a line; the listed global degrees of freedom are fixed; the rest numbered
// in order.
inline CAnalysisData NumberedModel(int nodeCount, std::initializer_list<int> fixedDofs,
                                   int frequencyCount = 4) {
    CAnalysisData analysis;
    for (int p = 0; p < nodeCount; ++p) analysis.nodes.emplace_back(p, 0.0, 0.0);
    analysis.dofFixed.assign(2 * static_cast<size_t>(nodeCount), 0);
    for (int d : fixedDofs) analysis.dofFixed[static_cast<size_t>(d)] = 1;
    analysis.equationMap.assign(analysis.dofFixed.size(), -1);
    int next = 0;
    for (size_t d = 0; d < analysis.dofFixed.size(); ++d)
        if (analysis.dofFixed[d] == 0) analysis.equationMap[d] = next++;
    analysis.freeDofCount = next;
    analysis.frequencyCount = frequencyCount;
    return analysis;
}

// The same entries with bit-identical values.
inline void ExpectSameEntries(const SparseComplexMatrix& a, const SparseComplexMatrix& b) {
    ASSERT_EQ(a.RowCount(), b.RowCount());
    for (size_t i = 0; i < a.RowCount(); ++i) {
        ASSERT_EQ(a.rows[i].size(), b.rows[i].size()) << "row " << i;
        auto ib = b.rows[i].begin();
        for (const auto& [j, v] : a.rows[i]) {
            EXPECT_EQ(j, ib->first) << "row " << i;
            EXPECT_EQ(v, ib->second) << "row " << i << " column " << j;
            ++ib;
        }
    }
}

// A pattern that matches text literally (extended regular expressions).
inline std::string Literal(const std::string& text) {
    static const std::regex special(R"([.^$|()\[\]{}*+?\\])");
    return std::regex_replace(text, special, R"(\$&)");
}

// For death tests of a reader's failure path: no wait on a terminal, and standard output
// (where the message goes) joined to the standard error that the test sees, from here on.
inline void RouteFailureOutputToStderr() {
    if (std::freopen("/dev/null", "r", stdin) == nullptr) std::abort();
    std::fflush(stdout);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

// A death test runs the test again in a new process, with scratch folders of its own: its
// messages name a file by the folder's place below the scratch root.
inline std::string InAnyScratchFolder(const std::string& relative) {
    return "/[^\n]*/" + Literal(relative);
}
