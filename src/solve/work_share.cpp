#include "solve/work_share.hpp"

#include <algorithm>

#include "base/ranks.hpp"
#include "solve/line_vectors.hpp"

namespace {
// The lines travel in rounds of at most this many bytes in all, so that the buffer of a round
// stays small beside the node spectra themselves.
constexpr size_t kRoundBytes = size_t{64} << 20;
// Degrees of freedom copied together between a round and the node spectra.
constexpr size_t kDofBlock = 256;

// A line of a round: its number and its solution over the free degrees of freedom.
struct RoundLine {
    int line;
    Complex* values;
};

// Copies the lines between a round and the node spectra: into the spectra (fixed degrees of
// freedom get 0) or out of them. A round holds its lines one after the other, while a node keeps
// each spectrum over the lines: the copy goes block of degrees of freedom by block, each over all
// the lines, so that the spectra of a block stay in the cache while their lines are written.
void CopyLines(const std::vector<RoundLine>& lines, bool intoSpectra,
               const std::vector<int32_t>& dofFixed, std::vector<CNode>& nodes) {
    const size_t dofCount = dofFixed.size();
    const size_t blockCount = (dofCount + kDofBlock - 1) / kDofBlock;
    // Free degrees of freedom before each block: where the block starts in a line of the round.
    std::vector<size_t> freeBefore(blockCount + 1, 0);
    for (size_t b = 0; b < blockCount; ++b) {
        freeBefore[b + 1] = freeBefore[b];
        for (size_t d = b * kDofBlock; d < std::min(dofCount, (b + 1) * kDofBlock); ++d)
            freeBefore[b + 1] += dofFixed[d] == 0;
    }
#pragma omp parallel for schedule(static)
    for (size_t b = 0; b < blockCount; ++b) {
        const size_t last = std::min(dofCount, (b + 1) * kDofBlock);
        for (const RoundLine& line : lines) {
            size_t free = freeBefore[b];
            for (size_t d = b * kDofBlock; d < last; ++d) {
                CNode& node = nodes[d / 2];
                Complex& entry = (d % 2 == 0 ? node.dispX : node.dispY)[line.line];
                if (dofFixed[d] != 0) {
                    if (intoSpectra) entry = Complex(0.0, 0.0);
                } else if (intoSpectra) {
                    entry = line.values[free++];
                } else {
                    line.values[free++] = entry;
                }
            }
        }
    }
}
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

void SolvedLineExchange::Run(int lineCount, CAnalysisData& analysis, bool everyRank) {
    const WorkShare& share = share_;
    const size_t equations = FreeDofCount(analysis.dofFixed);
    if (share.parts <= 1 || lineCount <= 1 || equations == 0) return;
    const bool receives = everyRank || share.part == 0;
    const int mostLines = share.LineCountOf(0, lineCount);
    const size_t lineBytes = equations * sizeof(Complex);
    const int perRound = static_cast<int>(std::clamp<size_t>(
        kRoundBytes / (lineBytes * static_cast<size_t>(share.parts)), 1, mostLines));

    std::vector<int> counts(static_cast<size_t>(share.parts));
    // Round by round: the k-th lines of every rank, k from first to first + perRound - 1.
    for (int first = 0; first < mostLines; first += perRound) {
        std::vector<int> start(counts.size(), 0);
        for (int p = 0; p < share.parts; ++p) {
            counts[p] = std::clamp(share.LineCountOf(p, lineCount) - first, 0, perRound);
            if (p > 0) start[p] = start[p - 1] + counts[p - 1];
        }
        const size_t roundLength = static_cast<size_t>(start.back() + counts.back()) * equations;
        if (round_.size() < roundLength) round_.resize(roundLength);
        // The lines of the round by rank, and the other ranks' lines in ascending order.
        std::vector<RoundLine> own, others;
        for (int p = 0; p < share.parts; ++p)
            for (int k = 0; k < counts[p]; ++k)
                (p == share.part ? own : others)
                    .push_back({share.LineOf(p, first + k),
                                &round_[static_cast<size_t>(start[p] + k) * equations]});
        std::sort(others.begin(), others.end(),
                  [](const RoundLine& a, const RoundLine& b) { return a.line < b.line; });

        CopyLines(own, false, analysis.dofFixed, analysis.nodes);
        ranks::ShareBlocks(round_.data(), equations, counts, everyRank);
        if (receives) CopyLines(others, true, analysis.dofFixed, analysis.nodes);
    }
}
