#include "solve/equivalent_linear_iteration.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "base/console.hpp"
#include "base/ranks.hpp"
#include "fem/element_matrices.hpp"

double MeanPeakShearStrain(const CElement& element, const CAnalysisData& analysis) {
    double sum = 0.0;
    const int pointCount = static_cast<int>(element.gaussPoints.size());
    StrainSeries series;
    for (int g = 0; g < pointCount; ++g) {
        // Each element is one task of a parallel loop, so its histories are taken serially.
        GaussStrainHistoryPrivate(element, g, analysis, series);
        const ComplexVector& ex = series[0];
        const ComplexVector& ey = series[1];
        const ComplexVector& gxy = series[3];
        double peak = 0.0;
        for (size_t t = 0; t < gxy.size(); ++t) {
            const double d = ex[t].real() - ey[t].real();
            const double s = gxy[t].real();
            peak = std::max(peak, std::sqrt(d * d + s * s));
        }
        sum += peak;
    }
    return sum / pointCount;
}

std::vector<double> PeakShearStrains(const CAnalysisData& analysis, const WorkShare& share) {
    const int count = static_cast<int>(analysis.elements.size());
    std::vector<double> strains(static_cast<size_t>(count), 0.0);
#pragma omp parallel for schedule(guided, 1)
    for (int e = 0; e < count; ++e) {
        const CElement& element = analysis.elements[e];
        if (share.OwnsElement(static_cast<size_t>(e)) && element.material->StrainDependent())
            strains[e] = MeanPeakShearStrain(element, analysis);
    }
    return strains;
}

void RunEquivalentLinearIteration(CAnalysisData& analysis, bool equivalentLinear,
                                  FrequencyLoop& loop) {
    std::vector<CElement>& elements = analysis.elements;
    const WorkShare& share = loop.Share();
    const auto dependentCount =
        std::count_if(elements.begin(), elements.end(),
                      [](const CElement& e) { return e.material->StrainDependent(); });
    // Strain histories are taken on every rank; without them only rank 0 needs the lines.
    const bool everyRankTakesStrains = equivalentLinear && dependentCount > 0;
    SolvedLineExchange exchange(share);
    for (int iteration = 1; iteration <= analysis.iterationLimit; ++iteration) {
        SparseComplexMatrix stiffnessMatrix(static_cast<size_t>(analysis.freeDofCount));
        AssembleStiffnessMatrix(elements.size(), analysis.equationMap, analysis.nodes, elements,
                                stiffnessMatrix);
        // What rank 0 has shown stays shown should another rank end the job during the pass.
        console::Flush();
        loop.Run(stiffnessMatrix, analysis);
        exchange.Run(analysis.frequencyCount, analysis, everyRankTakesStrains);
        if (!equivalentLinear) return;

        console::OutF("\n等価線形化計算 %d 回目", iteration);
        if (dependentCount == 0) return;

        std::vector<double> meanPeak = PeakShearStrains(analysis, share);
        // One rank's peak and zeros from the others: the sum is that peak exactly.
        ranks::SumOverRanks(meanPeak);
        std::vector<double> elementError(elements.size(), 0.0);
        for (size_t e = 0; e < elements.size(); ++e) {
            if (!elements[e].material->StrainDependent()) continue;
            DAT_Material& material = *elements[e].material;
            const double strain = analysis.effectiveStrainRatio * meanPeak[e];
            const double newModulus = material.G0 * material.CalcG(strain);
            elementError[e] = std::fabs(newModulus - material.Gused) / newModulus;
            const double newDamping = material.CalcH(strain);
            material.G = newModulus;
            material.h = newDamping;
            material.nu = material.nuUsed;
        }
        double error = 0.0;
        for (double value : elementError) error += value;
        error /= static_cast<double>(dependentCount);
        // The stream's default form of a number, as "%g" gives it.
        console::OutF("\nERROR = %g\tTOL=%g\n", error, analysis.tolerance);
        console::Flush();
        if (analysis.tolerance > error) return;

        for (CElement& element : elements)
            if (element.material->StrainDependent()) element.material->UpdateModuli();
    }
}
