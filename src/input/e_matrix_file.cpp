#include "input/e_matrix_file.hpp"

#include <algorithm>

#include "input/line_reader.hpp"
#include "input/text_scan.hpp"

namespace {
std::string DofBeyondText(int dof, size_t dofCount) {
    return "degree of freedom " + std::to_string(dof) + " is outside 0.." +
           std::to_string(static_cast<long long>(dofCount) - 1) + " of the nodes";
}
}  // namespace

EMatrixFileOutcome ReadEMatrixEntries(const std::string& path,
                                      const std::vector<int32_t>& equationMap,
                                      std::vector<EMatrixEntry>& entries) {
    EMatrixFileOutcome outcome;
    std::string text;
    if (!ReadWholeFile(path, text)) {
        outcome.status = EMatrixFileOutcome::Status::kMissing;
        return outcome;
    }
    // A line of a written matrix holds some 40 to 60 characters.
    entries.reserve(entries.size() + text.size() / 40 + 1);
    const int64_t dofCount = static_cast<int64_t>(equationMap.size());
    LineCursor cursor(text);
    std::string_view line;
    while (cursor.Next(line)) {
        int row = 0, col = 0;
        double re = 0.0, im = 0.0;
        FieldScanner fields(line);
        (void)(fields.Int(row) && fields.Int(col) && fields.Double(re) && fields.Double(im));
        for (const int dof : {row, col}) {
            if (dof < 0 || dof >= dofCount) {
                outcome.status = EMatrixFileOutcome::Status::kBadInput;
                outcome.line = cursor.LineNumber();
                outcome.fault = DofBeyondText(dof, equationMap.size());
                return outcome;
            }
        }
        const int32_t equationRow = equationMap[row];
        const int32_t equationCol = equationMap[col];
        if (equationRow != -1 && equationCol != -1)
            entries.push_back({EntryKey(equationRow, equationCol), Complex(re, im)});
    }
    return outcome;
}

void StopOnEMatrixOutcome(const EMatrixFileOutcome& outcome, const std::string& path,
                          const std::string& readingErrorText) {
    if (outcome.status == EMatrixFileOutcome::Status::kBadInput)
        StopOnBadInput(path, outcome.line, outcome.fault);
    StopOnUnreadableInput(path + "\n" + readingErrorText);
}

void AddEntries(SparseComplexMatrix& matrix, const std::vector<EMatrixEntry>& entries) {
    for (const EMatrixEntry& e : entries) matrix.add(KeyRow(e.key), KeyColumn(e.key), e.value);
}

void MergeEqualEntries(std::vector<EMatrixEntry>& entries) {
    const auto notBefore = [](const EMatrixEntry& a, const EMatrixEntry& b) {
        return a.key >= b.key;
    };
    if (std::adjacent_find(entries.begin(), entries.end(), notBefore) == entries.end()) return;
    std::stable_sort(entries.begin(), entries.end(),
                     [](const EMatrixEntry& a, const EMatrixEntry& b) { return a.key < b.key; });
    size_t kept = 0;
    for (size_t k = 0; k < entries.size(); ++k) {
        if (kept > 0 && entries[kept - 1].key == entries[k].key)
            entries[kept - 1].value += entries[k].value;
        else
            entries[kept++] = entries[k];
    }
    entries.resize(kept);
}
