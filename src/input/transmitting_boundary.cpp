#include "input/transmitting_boundary.hpp"

#include <omp.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "input/e_matrix_file.hpp"
#include "input/line_reader.hpp"

namespace {
// The two files of frequency line i, right side first.
std::string FrequencyFilePath(const std::string& folder, int i, int side) {
    return folder + (side == 0 ? "REMat" : "LEMat") + std::to_string(i) + ".dat";
}

std::string FrequencyReadingErrorText(int i) {
    return "Ematrix" + std::to_string(i) + ":Reading error";
}

void EnsureRows(SparseComplexMatrix& matrix, const CAnalysisData& analysis) {
    const size_t rowCount = static_cast<size_t>(std::max(analysis.freeDofCount, 0));
    if (matrix.RowCount() < rowCount) matrix.reset(rowCount);
}

// Reads the entries of one file and ends the run when that fails.
void ReadEntriesOrStop(const std::string& path, const std::string& readingErrorText,
                       const CAnalysisData& analysis, std::vector<EMatrixEntry>& entries) {
    const EMatrixFileOutcome outcome = ReadEMatrixEntries(path, analysis.equationMap, entries);
    if (outcome.status != EMatrixFileOutcome::Status::kRead)
        StopOnEMatrixOutcome(outcome, path, readingErrorText);
}
}  // namespace

void ReadFixedEMatrix(SparseComplexMatrix& matrix, const std::string& path,
                      const CAnalysisData& analysis) {
    std::vector<EMatrixEntry> entries;
    ReadEntriesOrStop(path, "Ematrix:Reading error", analysis, entries);
    EnsureRows(matrix, analysis);
    AddEntries(matrix, entries);
}

void ReadFrequencyEMatrix(SparseComplexMatrix& matrix, int i, const std::string& folder,
                          const CAnalysisData& analysis) {
    EnsureRows(matrix, analysis);
    std::vector<EMatrixEntry> entries;
    for (int side = 0; side < 2; ++side) {
        entries.clear();
        ReadEntriesOrStop(FrequencyFilePath(folder, i, side), FrequencyReadingErrorText(i),
                          analysis, entries);
        AddEntries(matrix, entries);
    }
}

struct FrequencyEMatrixStore::Impl {
    std::string folder;
    const CAnalysisData& analysis;
    SparseComplexMatrix pattern;
    std::vector<uint64_t> patternKeys;  // the entries of pattern, ascending
    bool inMemory = true;
    // Entry i: the merged entries of line i, ascending keys (held only in memory), and whether
    // the line is one of those kept.
    std::vector<std::vector<EMatrixEntry>> lines;
    std::vector<char> kept;

    Impl(const std::string& f, const CAnalysisData& a) : folder(f), analysis(a) {}

    // The merged entries of line i, or the outcome and path of the file that failed.
    struct LineRead {
        std::vector<EMatrixEntry> entries;
        EMatrixFileOutcome outcome;
        std::string failedPath;
    };
    LineRead ReadLine(int i) const;
    void ScanAll(uint64_t memoryBudgetBytes, const std::function<bool(int)>& keeps);
    bool Holds(int i) const {
        return inMemory && i >= 1 && i < analysis.frequencyCount && kept[static_cast<size_t>(i)];
    }
};

FrequencyEMatrixStore::Impl::LineRead FrequencyEMatrixStore::Impl::ReadLine(int i) const {
    LineRead read;
    for (int side = 0; side < 2; ++side) {
        const std::string path = FrequencyFilePath(folder, i, side);
        read.outcome = ReadEMatrixEntries(path, analysis.equationMap, read.entries);
        if (read.outcome.status != EMatrixFileOutcome::Status::kRead) {
            read.failedPath = path;
            return read;
        }
    }
    MergeEqualEntries(read.entries);
    read.entries.shrink_to_fit();
    return read;
}

void FrequencyEMatrixStore::Impl::ScanAll(uint64_t memoryBudgetBytes,
                                          const std::function<bool(int)>& keeps) {
    const int lineCount = analysis.frequencyCount;
    lines.resize(static_cast<size_t>(std::max(lineCount, 1)));
    kept.assign(lines.size(), 0);
    for (int i = 1; i < lineCount; ++i) kept[static_cast<size_t>(i)] = !keeps || keeps(i);
    std::vector<uint64_t> unionKeys, merged;
    uint64_t heldBytes = 0;
    // Lines are read a batch at a time, so that no more than one batch outgrows the budget.
    const int batch = 2 * std::max(omp_get_max_threads(), 1);
    for (int first = 1; first < lineCount; first += batch) {
        const int last = std::min(lineCount, first + batch);
        std::vector<LineRead> reads(static_cast<size_t>(last - first));
#pragma omp parallel for schedule(guided, 1)
        for (int i = first; i < last; ++i) reads[i - first] = ReadLine(i);

        // Failures are reported here, on the calling thread, for the lowest line.
        for (int i = first; i < last; ++i) {
            const LineRead& read = reads[i - first];
            if (read.outcome.status != EMatrixFileOutcome::Status::kRead)
                StopOnEMatrixOutcome(read.outcome, read.failedPath, FrequencyReadingErrorText(i));
        }
        for (int i = first; i < last; ++i) {
            std::vector<EMatrixEntry>& entries = reads[i - first].entries;
            merged.clear();
            merged.reserve(unionKeys.size() + entries.size());
            auto keyOf = [](const EMatrixEntry& e) { return e.key; };
            std::vector<uint64_t> keys(entries.size());
            std::transform(entries.begin(), entries.end(), keys.begin(), keyOf);
            std::set_union(unionKeys.begin(), unionKeys.end(), keys.begin(), keys.end(),
                           std::back_inserter(merged));
            unionKeys.swap(merged);
            if (!inMemory || !kept[static_cast<size_t>(i)]) continue;
            heldBytes += entries.capacity() * sizeof(EMatrixEntry);
            if (heldBytes > memoryBudgetBytes) {
                inMemory = false;
                std::vector<std::vector<EMatrixEntry>>().swap(lines);
                continue;
            }
            lines[i] = std::move(entries);
        }
    }
    pattern = SparseComplexMatrix(static_cast<size_t>(std::max(analysis.freeDofCount, 0)));
    patternKeys = std::move(unionKeys);
    for (const uint64_t key : patternKeys) {
        auto& row = pattern.rows[KeyRow(key)];
        row.emplace_hint(row.end(), KeyColumn(key), Complex(0.0, 0.0));
    }
}

FrequencyEMatrixStore::FrequencyEMatrixStore(const std::string& folder,
                                             const CAnalysisData& analysis,
                                             uint64_t memoryBudgetBytes,
                                             const std::function<bool(int)>& keeps)
    : impl_(std::make_unique<Impl>(folder, analysis)) {
    impl_->ScanAll(memoryBudgetBytes, keeps);
}

FrequencyEMatrixStore::~FrequencyEMatrixStore() = default;

const SparseComplexMatrix& FrequencyEMatrixStore::Pattern() const {
    return impl_->pattern;
}

bool FrequencyEMatrixStore::InMemory() const {
    return impl_->inMemory;
}

SparseComplexMatrix FrequencyEMatrixStore::Line(int i) const {
    SparseComplexMatrix matrix(static_cast<size_t>(std::max(impl_->analysis.freeDofCount, 0)));
    if (!impl_->Holds(i)) {
        ReadFrequencyEMatrix(matrix, i, impl_->folder, impl_->analysis);
        return matrix;
    }
    for (const EMatrixEntry& e : impl_->lines[static_cast<size_t>(i)]) {
        auto& row = matrix.rows[KeyRow(e.key)];
        row.emplace_hint(row.end(), KeyColumn(e.key), e.value);
    }
    return matrix;
}

void FrequencyEMatrixStore::LineOverPattern(int i, std::vector<Complex>& values) const {
    const Impl& store = *impl_;
    values.assign(store.patternKeys.size(), Complex(0.0, 0.0));
    const bool held = store.Holds(i);
    Impl::LineRead read;
    if (!held) {
        read = store.ReadLine(i);
        if (read.outcome.status != EMatrixFileOutcome::Status::kRead)
            StopOnEMatrixOutcome(read.outcome, read.failedPath, FrequencyReadingErrorText(i));
    }
    const std::vector<EMatrixEntry>& entries =
        held ? store.lines[static_cast<size_t>(i)] : read.entries;
    // Both lists ascend. A line read again holds nothing beyond the pattern unless its files
    // changed during the run.
    size_t k = 0;
    for (const EMatrixEntry& e : entries) {
        while (k < store.patternKeys.size() && store.patternKeys[k] < e.key) ++k;
        if (k == store.patternKeys.size() || store.patternKeys[k] != e.key)
            StopOnBadInput(FrequencyFilePath(store.folder, i, 0), 0,
                           "this line's matrix files changed during the run: equations " +
                               std::to_string(KeyRow(e.key)) + ", " +
                               std::to_string(KeyColumn(e.key)) +
                               " were not coupled when they were first read");
        values[k] = e.value;
    }
}
