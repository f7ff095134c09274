#include "results/record_lines.hpp"

#include <algorithm>
#include <array>

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

namespace {

// The parts of a line that are the same on every line of an element: its number and, for
// stress, the stiffness ratio with the line end.
class ElementLabels {
  public:
    explicit ElementLabels(const ElementLines& lines) {
        numberEnd_ = FormatInteger(number_, lines.elementNumber);
        ratio_[0] = ' ';
        ratioEnd_ = FormatFixed(ratio_ + 1, lines.stiffnessRatio, 4);
        *ratioEnd_++ = '\n';
    }
    ElementLabels(const ElementLabels&) = delete;
    ElementLabels& operator=(const ElementLabels&) = delete;
    std::string_view Number() const { return {number_, static_cast<size_t>(numberEnd_ - number_)}; }
    std::string_view Ratio() const { return {ratio_, static_cast<size_t>(ratioEnd_ - ratio_)}; }

  private:
    char number_[kMaxNumberChars];
    char* numberEnd_;
    char ratio_[kMaxNumberChars + 2];
    char* ratioEnd_;
};

// One line from the six values of a record, whether held as f32 or as double.
template <typename Values>
void AppendRecordLine(TextBuffer& out, RecordKind kind, const ElementLabels& labels,
                      const Values& values) {
    out.Text(labels.Number());
    if (kind == RecordKind::kStress) {
        // The records hold MPa; the file shows tf/m2.
        for (double value : values) out.Char(' ').Fixed(value / 9.80665 * 1000.0, 4);
        out.Text(labels.Ratio());
    } else {
        for (double value : values) out.Char(' ').Fixed(value, 8);
        out.Char('\n');
    }
}

// The six values of a response: the components in double, the two scalars as it keeps them.
std::array<double, 6> ResponseValues(RecordKind kind, const StepResponse& r) {
    const Vector4& v = kind == RecordKind::kStress ? r.stress : r.strain;
    const double a = kind == RecordKind::kStress ? r.mean : r.vol;
    const double b = kind == RecordKind::kStress ? r.dev : r.devStrain;
    return {v[0], v[1], v[2], v[3], a, b};
}

}  // namespace

void AppendElementLines(std::span<TextBuffer* const> outs, RecordKind kind,
                        const std::vector<float>& data, const WorkRecordIndex& index,
                        uint64_t element, uint64_t firstStep, const ElementLines& lines) {
    const ElementLabels labels(lines);
    // The records of consecutive steps of a point lie side by side: read them in that order.
    for (int g = 0; g < lines.lineCount; ++g) {
        for (size_t i = 0; i < outs.size(); ++i) {
            const WorkRecord record = RecordAt(data, index.Position(element, g, firstStep + i));
            AppendRecordLine(*outs[i], kind, labels, record);
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

void AppendModelRecords(TextBuffer& out, const CAnalysisData& analysis,
                        const std::vector<std::vector<StepResponse>>& points) {
    for (RecordKind kind : {RecordKind::kStress, RecordKind::kStrain}) {
        out.Text(RecordBanner(kind));
        for (size_t e = 0; e < points.size(); ++e) {
            const ElementLabels labels({static_cast<int64_t>(e) + 1, 0,
                                        StiffnessRatioOf(analysis, static_cast<int64_t>(e))});
            for (const StepResponse& point : points[e])
                AppendRecordLine(out, kind, labels, ResponseValues(kind, point));
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
