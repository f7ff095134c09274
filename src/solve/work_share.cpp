#include "solve/work_share.hpp"

#include <algorithm>

#include "base/ranks.hpp"
#include "solve/line_vectors.hpp"

namespace {
// The lines travel in rounds of at most this many bytes in all, so that the buffer of a round
// stays small beside the node spectra themselves.
constexpr size_t kRoundBytes = size_t{256} << 20;
}  // namespace

WorkShare WorkShare::OfThisRank() {
    return WorkShare{ranks::Rank(), ranks::Count()};
}

int WorkShare::LineCountOf(int p, int lineCount) const {
    const int lines = std::max(lineCount - 1, 0);
    return lines / parts + (p < lines % parts ? 1 : 0);
}

std::vector<int> WorkShare::Lines(int lineCount) const {
    std::vector<int> lines(static_cast<size_t>(LineCountOf(part, lineCount)));
    for (size_t k = 0; k < lines.size(); ++k) lines[k] = LineOf(part, static_cast<int>(k));
    return lines;
}

void ShareSolvedLines(const WorkShare& share, int lineCount, CAnalysisData& analysis,
                      bool everyRank) {
    const size_t equations = FreeDofCount(analysis.dofFixed);
    if (share.parts <= 1 || lineCount <= 1 || equations == 0) return;
    const bool receives = everyRank || share.part == 0;
    const int mostLines = share.LineCountOf(0, lineCount);
    const size_t lineBytes = equations * sizeof(Complex);
    const int perRound = static_cast<int>(std::clamp<size_t>(
        kRoundBytes / (lineBytes * static_cast<size_t>(share.parts)), 1, mostLines));

    std::vector<Complex> round;
    std::vector<int> counts(static_cast<size_t>(share.parts));
    // Round by round: the k-th lines of every rank, k from first to first + perRound - 1.
    for (int first = 0; first < mostLines; first += perRound) {
        std::vector<int> start(counts.size(), 0);
        for (int p = 0; p < share.parts; ++p) {
            counts[p] = std::clamp(share.LineCountOf(p, lineCount) - first, 0, perRound);
            if (p > 0) start[p] = start[p - 1] + counts[p - 1];
        }
        round.resize(static_cast<size_t>(start.back() + counts.back()) * equations);
        for (int k = 0; k < counts[share.part]; ++k)
            PackLineSolution(analysis.nodes, analysis.dofFixed,
                             share.LineOf(share.part, first + k),
                             &round[static_cast<size_t>(start[share.part] + k) * equations]);
        ranks::ShareBlocks(round.data(), equations, counts, everyRank);
        if (!receives) continue;
        for (int p = 0; p < share.parts; ++p) {
            if (p == share.part) continue;
            for (int k = 0; k < counts[p]; ++k)
                StoreLineSolution(&round[static_cast<size_t>(start[p] + k) * equations],
                                  analysis.dofFixed, share.LineOf(p, first + k), analysis.nodes);
        }
    }
}
