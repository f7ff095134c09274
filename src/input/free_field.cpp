#include "input/free_field.hpp"

#include <algorithm>

#include "input/line_reader.hpp"
#include "input/text_scan.hpp"

namespace {
// Stores the values of one column file at the x equation of its node. A file that cannot be
// opened is simply not there.
void ReadColumnFile(std::vector<ComplexVector>& freeFieldMotion, const std::string& path,
                    const CAnalysisData& analysis) {
    std::string text;
    if (!ReadWholeFile(path, text)) return;
    LineCursor cursor(text);
    std::string_view line;
    if (!cursor.Next(line)) return;
    int node = 0;  // a first line without a number names node 0
    FieldScanner(line).Int(node);
    const int64_t nodeCount = static_cast<int64_t>(analysis.nodes.size());
    if (node < 0 || node >= nodeCount)
        StopOnBadInput(path, 1,
                       "node " + std::to_string(node) + " is outside 0.." +
                           std::to_string(nodeCount - 1) + " of the node list");
    const int32_t equation = analysis.equationMap[2 * static_cast<size_t>(node)];
    if (equation == -1) return;
    const size_t lineCount = freeFieldMotion.size();
    for (size_t k = 0; k < lineCount && cursor.Next(line); ++k) {
        double re = 0.0, im = 0.0;
        FieldScanner fields(line);
        (void)(fields.Double(re) && fields.Double(im));
        freeFieldMotion[k][static_cast<size_t>(equation)] = Complex(re, im);
    }
}
}  // namespace

void ReadFreeFieldFiles(std::vector<ComplexVector>& freeFieldMotion, const std::string& folder,
                        const CAnalysisData& analysis) {
    const size_t lineCount = static_cast<size_t>(std::max(analysis.frequencyCount, 0));
    const size_t equationCount = static_cast<size_t>(std::max(analysis.freeDofCount, 0));
    freeFieldMotion.resize(lineCount);
    for (ComplexVector& motion : freeFieldMotion)
        if (motion.size() != equationCount) motion.resize(equationCount);
    // The right columns first: a left file for the same node overwrites them where it has lines.
    for (const char* side : {"RFF_", "LFF_"})
        for (size_t f = 0; f < analysis.nodes.size(); ++f)
            ReadColumnFile(freeFieldMotion, folder + side + std::to_string(f) + ".dat", analysis);
}
