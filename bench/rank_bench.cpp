// The frequency loop spread over the ranks of an MPI job, on a large structured section. In one
// job of R ranks it times a pass of the same lines shared by the first 1, 2, ..., R ranks (the
// others wait), the move of the solved lines of a run after a pass (to every rank, and to rank 0
// alone), and the strain histories of a run of elements shared by the first 1, ..., R ranks:
//   mpirun -n 2 --bind-to none build/bench/rank_bench 4 33506 8 410 400 2>/dev/null
//
// Usage: rank_bench [nodesPerElement=4] [equations=33506] [lines=8] [movedLines=410]
//                   [strainElements=400] [repeats=2] [workers=0]
//   lines           frequency lines of the timed pass (1 .. lines)
//   movedLines      lines whose solutions travel after the pass, as in a run of that many lines
//   strainElements  elements whose strain histories are timed (0: none); these need the spectra
//                   of all 2,049 lines of the wave, 1.1 GB a rank at 33,506 equations
//   repeats         each measurement is repeated and the best taken
//   workers         threads of each rank (0: as the program chooses)
// Figures come from rank 0 on standard output; the loop's console lines go to standard error.
#include <omp.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "base/ranks.hpp"
#include "fem/element_matrices.hpp"
#include "section_model.hpp"
#include "solve/equivalent_linear_iteration.hpp"
#include "solve/frequency_loop.hpp"
#include "solve/line_vectors.hpp"
#include "solve/work_share.hpp"

namespace {

// Best of the repeats of a collective step, from the moment every rank is there until every
// rank is through.
template <typename Step>
double BestSeconds(int repeats, const Step& step) {
    double best = 1e300;
    for (int r = 0; r < repeats; ++r) {
        ranks::WaitForAll();
        const double start = omp_get_wtime();
        step();
        ranks::WaitForAll();
        best = std::min(best, omp_get_wtime() - start);
    }
    return best;
}

}  // namespace

int main(int argc, char** argv) {
    ranks::Start(&argc, &argv);
    auto argument = [&](int k, int fallback) { return argc > k ? std::atoi(argv[k]) : fallback; };
    const int nodesPerElement = argument(1, 4);
    const int equations = argument(2, 33506);
    const int lines = std::max(1, argument(3, 8));
    const int movedLines = std::max(1, argument(4, 410));
    const int strainElements = std::max(0, argument(5, 400));
    const int repeats = std::max(1, argument(6, 2));
    const int workers = argument(7, 0) > 0 ? argument(7, 0) : ranks::SolutionWorkers();
    omp_set_num_threads(workers);
    const WorkShare share = WorkShare::OfThisRank();

    BenchModel m;
    BuildModel(m, nodesPerElement, equations, lines, 2);
    CAnalysisData& analysis = m.analysis;
    const size_t n = static_cast<size_t>(analysis.freeDofCount);
    std::printf("ranks: %d (%d on this machine), %d worker(s) each\n", ranks::Count(),
                ranks::CountOnMachine(), workers);

    // Every rank assembles the stiffness of the current moduli before each pass.
    double seconds = omp_get_wtime();
    SparseComplexMatrix stiffness(n);
    AssembleStiffnessMatrix(analysis.elements.size(), analysis.equationMap, analysis.nodes,
                            analysis.elements, stiffness);
    std::printf("stiffness of a pass (every rank): %.3f s\n", omp_get_wtime() - seconds);

    // The same lines shared by the first `used` ranks; the others wait at the end of the pass.
    std::vector<double> passSeconds;
    for (int used = 1; used <= ranks::Count(); ++used) {
        const bool takesPart = ranks::Rank() < used;
        FrequencyLoop loop(m.terms, WorkShare{takesPart ? ranks::Rank() : 0, used});
        seconds = omp_get_wtime();
        if (takesPart) loop.Prepare(m.stiffness);
        if (used == 1)
            std::printf("pattern and symbolic analysis (every rank, once a run): %.3f s\n",
                        omp_get_wtime() - seconds);
        passSeconds.push_back(BestSeconds(repeats, [&] {
            if (takesPart) loop.Run(m.stiffness, analysis);
        }));
        std::printf("pass of %d lines on %d rank(s): %.3f s, %.3f lines/s, speed-up %.2f\n", lines,
                    used, passSeconds.back(), lines / passSeconds.back(),
                    passSeconds.front() / passSeconds.back());
    }
    const double linesPerSecond = lines / passSeconds.back();

    // The solutions of a run of movedLines lines, as they travel after each pass.
    analysis.frequencyCount = movedLines + 1;
    EnsureSpectrumLength(analysis.nodes, static_cast<size_t>(movedLines + 1));
    const double bytes = static_cast<double>(movedLines) * static_cast<double>(n) * 16.0;
    SolvedLineExchange exchange(share);
    // The first move of a run also takes the fresh pages of the buffer.
    const double firstMove = BestSeconds(1, [&] { exchange.Run(movedLines + 1, analysis, true); });
    const double toAll =
        BestSeconds(repeats, [&] { exchange.Run(movedLines + 1, analysis, true); });
    const double toLead =
        BestSeconds(repeats, [&] { exchange.Run(movedLines + 1, analysis, false); });
    // The transfer alone, without packing and storing: the same bytes as one block per rank.
    std::vector<int> counts(static_cast<size_t>(ranks::Count()));
    for (int p = 0; p < ranks::Count(); ++p) counts[p] = share.LineCountOf(p, movedLines + 1);
    std::vector<Complex> buffer(static_cast<size_t>(movedLines) * n);
    const double transfer =
        BestSeconds(repeats, [&] { ranks::ShareBlocks(buffer.data(), n, counts, true); });
    buffer = std::vector<Complex>();
    // A pass of movedLines lines at the rate above, and the move after it.
    const double runPass = movedLines / linesPerSecond;
    std::printf("\nmoving %d lines of %zu equations: %.1f MB in all\n", movedLines, n, bytes / 1e6);
    std::printf("  to every rank: %.3f s (%.0f MB/s), to rank 0: %.3f s (%.0f MB/s);"
                " the first move of a run: %.3f s\n",
                toAll, bytes / 1e6 / toAll, toLead, bytes / 1e6 / toLead, firstMove);
    std::printf("  of which the transfer to every rank alone: %.3f s (%.0f MB/s)\n", transfer,
                bytes / 1e6 / transfer);
    std::printf("  a pass of %d lines at the rate above: %.1f s; moving to every rank is %.2f%%\n",
                movedLines, runPass, 100.0 * toAll / (runPass + toAll));

    if (strainElements > 0) {
        EnsureSpectrumLength(analysis.nodes, static_cast<size_t>(analysis.PaddedLength() / 2 + 1));
        const int count = std::min(strainElements, static_cast<int>(analysis.elements.size()));
        std::printf("\nstrain histories of %d elements (%d steps):\n", count,
                    analysis.PaddedLength());
        double alone = 0.0;
        for (int used = 1; used <= ranks::Count(); ++used) {
            const WorkShare elements{ranks::Rank(), used};
            const bool takesPart = ranks::Rank() < used;
            seconds = BestSeconds(repeats, [&] {
                std::vector<double> peaks(static_cast<size_t>(count), 0.0);
#pragma omp parallel for schedule(guided, 1)
                for (int e = 0; e < count; ++e)
                    if (takesPart && elements.OwnsElement(static_cast<size_t>(e)))
                        peaks[e] = MeanPeakShearStrain(analysis.elements[e], analysis);
                ranks::SumOverRanks(peaks);
            });
            if (used == 1) alone = seconds;
            std::printf("  on %d rank(s): %.3f s, %.0f elements/s, speed-up %.2f;"
                        " all %zu elements of the section: %.1f s\n",
                        used, seconds, count / seconds, alone / seconds, analysis.elements.size(),
                        analysis.elements.size() * seconds / count);
        }
    }
    ranks::Finish();
    return 0;
}
