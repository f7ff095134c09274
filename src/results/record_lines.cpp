#include "results/record_lines.hpp"

#include <algorithm>

#include "results/number_format.hpp"
#include "results/work_file_reader.hpp"

std::string_view RecordBanner(RecordKind kind) {
    return kind == RecordKind::kStress ? "---- stress ----\n" : "---- strain ----\n";
}

void AppendClosingBlocks(TextBuffer& out) {
    out.Text(
        "---- total head ----\n0\n---- fext ----\n0\n"
        "---- deviatric strain ----\n0\n---- pvsn & eq_epn ----\n0\n");
}

int PointCountOf(const CAnalysisData& analysis, int64_t element) {
    if (element < 0 || static_cast<size_t>(element) >= analysis.elements.size()) return 0;
    return analysis.elements[element].gaussCount;
}

double StiffnessRatioOf(const CAnalysisData& analysis, int64_t element) {
    if (element < 0 || static_cast<size_t>(element) >= analysis.elements.size()) return 0.0;
    const DAT_Material* material = analysis.elements[element].material.get();
    return material == nullptr ? 0.0 : material->G / material->G0;
}

void AppendElementLines(std::span<TextBuffer* const> outs, RecordKind kind,
                        const std::vector<float>& data, const WorkRecordIndex& index,
                        uint64_t element, uint64_t firstStep, const ElementLines& lines) {
    // The element's number and, for stress, the stiffness ratio are the same on every line.
    char number[kMaxNumberChars];
    const std::string_view numberText(number, FormatInteger(number, lines.elementNumber) - number);
    char ratio[kMaxNumberChars + 2];
    ratio[0] = ' ';
    char* ratioEnd = FormatFixed(ratio + 1, lines.stiffnessRatio, 4);
    *ratioEnd++ = '\n';
    const std::string_view ratioText(ratio, ratioEnd - ratio);

    // The records of consecutive steps of a point lie side by side: read them in that order.
    for (int g = 0; g < lines.lineCount; ++g) {
        for (size_t i = 0; i < outs.size(); ++i) {
            TextBuffer& out = *outs[i];
            const WorkRecord record = RecordAt(data, index.Position(element, g, firstStep + i));
            out.Text(numberText);
            if (kind == RecordKind::kStress) {
                // The records hold MPa; the file shows tf/m2.
                for (float value : record) out.Char(' ').Fixed(double{value} / 9.80665 * 1000.0, 4);
                out.Text(ratioText);
            } else {
                for (float value : record) out.Char(' ').Fixed(double{value}, 8);
                out.Char('\n');
            }
        }
    }
}

void AppendModelRecords(TextBuffer& out, const CAnalysisData& analysis,
                        const std::vector<float>& stress, const std::vector<float>& strain,
                        uint64_t step) {
    const WorkRecordIndex index{analysis.elements.size(), 1};
    TextBuffer* const outs[] = {&out};
    for (RecordKind kind : {RecordKind::kStress, RecordKind::kStrain}) {
        out.Text(RecordBanner(kind));
        const std::vector<float>& data = kind == RecordKind::kStress ? stress : strain;
        for (size_t e = 0; e < analysis.elements.size(); ++e) {
            const ElementLines lines{static_cast<int64_t>(e) + 1, analysis.elements[e].gaussCount,
                                     StiffnessRatioOf(analysis, static_cast<int64_t>(e))};
            AppendElementLines(outs, kind, data, index, e, step, lines);
        }
    }
    AppendClosingBlocks(out);
}

void AppendGroupedRecords(std::span<TextBuffer* const> outs, RecordKind kind, PointCountRule rule,
                          const CAnalysisData& analysis, const GroupedRecords& records) {
    const size_t groups =
        std::min({records.groupCount, records.buffers.size(), records.groupSizes.size()});
    int64_t running = 0;
    for (size_t v = 0; v < groups; ++v) {
        const WorkRecordIndex index{records.groupSizes[v], records.stepStride};
        for (uint32_t k = 0; k < records.groupSizes[v]; ++k, ++running) {
            const int64_t element = records.firstElement + running;
            const int64_t counted = rule == PointCountRule::kRunningIndex ? running : int64_t{k};
            const ElementLines lines{element + 1, PointCountOf(analysis, counted),
                                     StiffnessRatioOf(analysis, element)};
            AppendElementLines(outs, kind, records.buffers[v], index, k, records.firstStep, lines);
        }
    }
}
