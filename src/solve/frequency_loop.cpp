#include "solve/frequency_loop.hpp"

#include <omp.h>

#include <algorithm>

#include "solve/line_system_chain.hpp"
#include "solve/line_vectors.hpp"

void FrequencyLoop::Prepare(const SparseComplexMatrix& stiffness) {
    if (pattern_ && pattern_->LoadStiffness(stiffness)) return;
    symbolic_.reset();
    pattern_ = std::make_unique<LineSystemPattern>(terms_, stiffness);
    pattern_->LoadStiffness(stiffness);
    symbolic_ = std::make_unique<SymbolicAnalysis>(pattern_->System());
}

void FrequencyLoop::Run(const SparseComplexMatrix& stiffness, CAnalysisData& analysis,
                        std::vector<LineTiming>* timings) {
    const int lineCount = analysis.frequencyCount;
    if (lineCount <= 1) return;
    Prepare(stiffness);
    EnsureSpectrumLength(analysis.nodes, static_cast<size_t>(lineCount));
    if (timings != nullptr) timings->assign(static_cast<size_t>(lineCount - 1), LineTiming{});

    const LineSystemPattern& pattern = *pattern_;
    const SymbolicAnalysis& symbolic = *symbolic_;
    const size_t n = pattern.EquationCount();
    // The packed right-hand side must match the system; otherwise every line fails as input.
    const bool consistent = FreeDofCount(analysis.dofFixed) == n;
    const bool withSides = terms_.HasSideLoad();

    const std::vector<int> lines = share_.Lines(lineCount);
    const int ownCount = static_cast<int>(lines.size());
    // Rank 0 speaks for the job: its line opens a round of as many lines as there are ranks,
    // which the others take up at the same moment, so it shows the whole round. Every line is
    // shown once, and with one worker a rank, in the order of a single process.
    const bool speaks = share_.part == 0;
    const int roundLength = share_.parts;

#pragma omp parallel
    {
        LineSolver solver(symbolic);
        LineScratch scratch = pattern.MakeScratch();
        std::vector<Complex> values(pattern.System().column.size());
        std::vector<Complex> boundaryLoad(withSides ? n : 0);
        std::vector<Complex> rhs(n), x(n);

#pragma omp for schedule(guided, 1)
        for (int k = 0; k < ownCount; ++k) {
            const int i = lines[k];
            const double start = omp_get_wtime();
            if (speaks)
                for (int j = i; j < std::min(i + roundLength, lineCount); ++j)
                    PrintLineProgress(j, terms_.duration, analysis.waveSpectrum);
            const double w = LineCircularFrequency(i, terms_.duration);
            if (!pattern.FormLine(i, w, values.data(), boundaryLoad.data(), scratch)) {
                // A side matrix beyond the pattern known at the start: solve it the plain way.
                SolveLineByChain(terms_, stiffness, i, analysis);
                continue;
            }
            PackRightHandSide(*terms_.inertiaLoad, withSides ? boundaryLoad.data() : nullptr,
                              analysis.equationMap, analysis.dofFixed, rhs.data());
            const double assembled = omp_get_wtime();
            int status = consistent ? solver.Factorise(values.data()) : kSolveBadInput;
            const double factorised = omp_get_wtime();
            if (status == kSolveOk) status = solver.SolveFactorised(rhs.data(), x.data());
            if (status != kSolveOk) StopOnSolverFailure(SolveFailureMessage(status));
            const double solved = omp_get_wtime();
            StoreLineSolution(x.data(), analysis.dofFixed, i, analysis.nodes);
            if (timings != nullptr)
                (*timings)[static_cast<size_t>(i - 1)] =
                    LineTiming{i, assembled - start, factorised - assembled, solved - factorised,
                               omp_get_wtime() - start};
        }
    }
}
