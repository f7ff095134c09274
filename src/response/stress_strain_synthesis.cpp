#include "response/stress_strain_synthesis.hpp"

#include <algorithm>
#include <cstdio>

#include "base/console.hpp"
#include "fem/element_matrices.hpp"
#include "response/element_stress_pass.hpp"

void CalcStressStrainGroup(const CAnalysisData& analysis, int k,
                           const std::vector<uint32_t>& groupSizes) {
    StressStrainFiles files(GroupSetNames(k));
    // A group beyond the list of sizes holds no elements; none reaches past the element list.
    const bool known = k >= 0 && size_t(k) < groupSizes.size();
    const size_t elementCount = analysis.elements.size();
    const size_t first =
        known ? std::min<size_t>(size_t(groupSizes[0]) * size_t(k), elementCount) : elementCount;
    const size_t last = known ? std::min<size_t>(first + groupSizes[k], elementCount) : first;
    if (first == last) return;
    ElementStressPass pass(analysis, RecordSteps::Every, &GaussStrainHistoryPrivate);
    for (size_t e = first; e < last; ++e) pass.Run(analysis.elements[e], files);
}

void CalcStressStrainSerial(const CAnalysisData& analysis) {
    StressStrainFiles files(SingleSetNames());
    ElementStressPass pass(analysis, RecordSteps::FirstOnly, &GaussStrainHistory);
    const int elementCount = static_cast<int>(analysis.elements.size());
    for (int e = 0; e < elementCount; ++e) {
        console::OutF("\r 応力ひずみ計算中　[ %d / %d ] ", e, elementCount);
        console::Flush();
        pass.Run(analysis.elements[e], files);
    }
}

void RunStressStrainGroups(const CAnalysisData& analysis, int groupCount,
                           const std::vector<uint32_t>& groupSizes) {
    const int groups = std::min(groupCount, static_cast<int>(groupSizes.size()));
#pragma omp parallel for schedule(guided, 1)
    for (int k = 0; k < groups; ++k) CalcStressStrainGroup(analysis, k, groupSizes);
}
