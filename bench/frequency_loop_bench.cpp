// The frequency loop on a large structured soil section: time per line of the value assembly,
// the factorisation and the solve; the share of a line spent outside factorisation and solve;
// the whole loop with 1, 2, ... threads up to all processors; and, in the same run, the same
// lines solved the plain way (row-map arithmetic, compression, a complete analysis,
// factorisation and release per line, one line at a time), for a side-by-side ratio.
//
// Usage: frequency_loop_bench [nodesPerElement=4] [equations=20000] [lines=8] [plainLines=2]
//                             [sideBoundaryType=2] [repeats=3]
//   nodesPerElement  4 or 8 (6: triangles)
//   equations        about this many equations, in a section four times as wide as deep
//   lines            frequency lines of the loop (1 .. lines)
//   plainLines       lines solved the plain way (the first ones)
//   sideBoundaryType 2: base dashpots only; 1: the side dashpots also as viscous sides with a
//                    free-field load
//   repeats          each measurement is repeated and the best taken (default 3), as other
//                    work on the machine only ever slows a run down
// Figures go to standard output; the loop's own console lines go to standard error.
#include <omp.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "section_model.hpp"
#include "solve/frequency_loop.hpp"
#include "solve/line_system_chain.hpp"
#include "solve/line_vectors.hpp"

namespace {

std::vector<Complex> LineSpectra(const CAnalysisData& analysis, int lastLine) {
    std::vector<Complex> all;
    for (const CNode& node : analysis.nodes)
        for (int i = 1; i <= lastLine; ++i) {
            all.push_back(node.dispX[i]);
            all.push_back(node.dispY[i]);
        }
    return all;
}

double Mean(const std::vector<double>& v) {
    double s = 0.0;
    for (double x : v) s += x;
    return v.empty() ? 0.0 : s / static_cast<double>(v.size());
}

// The plain way for line i: row-map arithmetic and packing, then compression, a complete
// analysis, factorisation and solve; stores the line. Returns the seconds of the two parts.
std::pair<double, double> SolvePlainLine(BenchModel& m, int i) {
    const double start = omp_get_wtime();
    PrintLineProgress(i, m.terms.duration, m.analysis.waveSpectrum);
    const double w = LineCircularFrequency(i, m.terms.duration);
    ChainLine chain = FormLineByChain(m.terms, m.stiffness, i, w);
    std::vector<Complex> packed(FreeDofCount(m.analysis.dofFixed));
    PackRightHandSide(m.inertiaLoad,
                      chain.boundaryLoad.size() != 0 ? chain.boundaryLoad.data.data() : nullptr,
                      m.analysis.equationMap, m.analysis.dofFixed, packed.data());
    const double formed = omp_get_wtime();
    const int status = chain.system.solve(packed.data());
    if (status != 0) StopOnSolverFailure(SolveFailureMessage(status));
    StoreLineSolution(packed.data(), m.analysis.dofFixed, i, m.analysis.nodes);
    return {formed - start, omp_get_wtime() - formed};
}

}  // namespace

int main(int argc, char** argv) {
    auto argument = [&](int k, int fallback) { return argc > k ? std::atoi(argv[k]) : fallback; };
    const int nodesPerElement = argument(1, 4);
    const int equations = argument(2, 20000);
    const int lines = std::max(1, argument(3, 8));
    const int plainLines = std::clamp(argument(4, 2), 0, lines);
    const int mode = argument(5, 2);
    const int repeats = std::max(1, argument(6, 3));
    const int processors = omp_get_num_procs();

    BenchModel m;
    double t = omp_get_wtime();
    BuildModel(m, nodesPerElement, equations, lines, mode);
    std::printf("element matrices: %.3f s\n", omp_get_wtime() - t);

    // The fast loop with each thread count, best of the repeats; per-line figures from the best
    // run on all processors.
    std::vector<double> loopSeconds(processors, 1e300);
    double prepareSeconds = 1e300;
    std::vector<LineTiming> timings, best;
    for (int r = 0; r < repeats; ++r) {
        for (int threads = 1; threads <= processors; ++threads) {
            omp_set_num_threads(threads);
            FrequencyLoop loop(m.terms);
            t = omp_get_wtime();
            loop.Prepare(m.stiffness);
            const double prepared = omp_get_wtime();
            loop.Run(m.stiffness, m.analysis, &timings);
            const double seconds = omp_get_wtime() - prepared;
            prepareSeconds = std::min(prepareSeconds, prepared - t);
            if (threads == processors && seconds < loopSeconds[threads - 1]) best = timings;
            loopSeconds[threads - 1] = std::min(loopSeconds[threads - 1], seconds);
            if (r == 0 && threads == 1)
                std::printf("entries of the line system: %lld\n",
                            static_cast<long long>(loop.Pattern()->System().EntryCount()));
        }
    }
    std::printf("pattern and symbolic analysis (once a run): %.3f s\n", prepareSeconds);
    const std::vector<Complex> fast = LineSpectra(m.analysis, plainLines);

    std::printf("\nper line, %d threads, best of %d runs (s):\n%6s %10s %10s %10s %10s %9s\n",
                processors, repeats, "line", "assembly", "factorise", "solve", "total", "overhead");
    std::vector<double> overhead;
    for (const LineTiming& l : best) {
        const double outside = (l.total - l.factorisation - l.solve) / l.total;
        overhead.push_back(outside);
        std::printf("%6d %10.4f %10.4f %10.4f %10.4f %8.2f%%\n", l.line, l.assembly,
                    l.factorisation, l.solve, l.total, 100.0 * outside);
    }
    std::printf("mean share outside factorisation and solve: %.2f%%\n", 100.0 * Mean(overhead));

    std::printf("\nwhole loop of %d lines, best of %d runs:\n", lines, repeats);
    for (size_t k = 0; k < loopSeconds.size(); ++k)
        std::printf("  %zu thread(s): %.3f s, speed-up %.2f\n", k + 1, loopSeconds[k],
                    loopSeconds[0] / loopSeconds[k]);

    if (plainLines == 0) return 0;
    std::vector<double> formSeconds, solveSeconds;
    omp_set_num_threads(1);
    for (int i = 1; i <= plainLines; ++i) {
        double form = 1e300, solve = 1e300;
        for (int r = 0; r < repeats; ++r) {
            const auto [f, s] = SolvePlainLine(m, i);
            form = std::min(form, f);
            solve = std::min(solve, s);
        }
        formSeconds.push_back(form);
        solveSeconds.push_back(solve);
    }
    const std::vector<Complex> plain = LineSpectra(m.analysis, plainLines);
    double largest = 0.0, difference = 0.0;
    for (size_t k = 0; k < plain.size(); ++k) {
        largest = std::max(largest, std::abs(plain[k]));
        difference = std::max(difference, std::abs(plain[k] - fast[k]));
    }
    const double plainLine = Mean(formSeconds) + Mean(solveSeconds);
    std::printf("\nplain way, %d line(s) one at a time, best of %d (s per line):\n", plainLines,
                repeats);
    std::printf(
        "  row-map arithmetic %.3f, compression + analysis + factorisation + solve %.3f,"
        " whole line %.3f\n",
        Mean(formSeconds), Mean(solveSeconds), plainLine);
    std::printf("  largest difference to the fast loop: %.3g (largest value %.3g)\n", difference,
                largest);
    // A run solves hundreds of lines over several iterations on one analysis; over the few
    // lines here the analysis is charged in full as well.
    const double fastLine = loopSeconds.back() / lines;
    const double fastWithAnalysis = (prepareSeconds + loopSeconds.back()) / lines;
    std::printf(
        "\nper line: plain way %.4f s, fast on %d threads %.4f s: %.2fx"
        " (%.2fx with the analysis charged to these %d lines)\n",
        plainLine, processors, fastLine, plainLine / fastLine, plainLine / fastWithAnalysis, lines);
    return 0;
}
