// The analysis constants: seven numbers, one a line, known by their place.
#include <string>

#include "input/line_reader.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"

void ReadConstants(CAnalysisData& analysis, const std::string& path) {
    if (path.empty()) return;
    const NumberList numbers = ReadNumbers(path, "dConstantData:Reading error");
    constexpr size_t kRequired = 7;
    if (numbers.values.size() < kRequired) {
        const int line = numbers.lines.empty() ? 0 : numbers.lines.back();
        StopOnBadInput(path, line,
                       "the analysis constants need 7 values, the file gives " +
                           std::to_string(numbers.values.size()));
    }
    const auto& v = numbers.values;
    analysis.sources.constantsPath = path;
    analysis.sources.constants.assign(v.begin(), v.begin() + kRequired);
    analysis.sources.constantLines.assign(numbers.lines.begin(), numbers.lines.begin() + kRequired);
    analysis.cutoffFrequency = v[0];
    // v[1]: the file keeps a place for a second constant that the analysis does not use.
    analysis.timeStep = v[2];
    analysis.tolerance = v[3];
    analysis.effectiveStrainRatio = v[4];
    analysis.iterationLimit = TruncateToInt(v[5]);
    analysis.sideBoundaryType = TruncateToInt(v[6]);
}
