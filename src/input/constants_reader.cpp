// The analysis constants: seven numbers, one a line, known by their place.
#include <string>

#include "input/line_reader.hpp"
#include "run/analysis_data.hpp"

void CAnalysisData::ReadConstants(const std::string& path) {
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
    cutoffFrequency = v[0];
    secondConstant = v[1];
    timeStep = v[2];
    tolerance = v[3];
    effectiveStrainRatio = v[4];
    iterationLimit = TruncateToInt(v[5]);
    sideBoundaryType = TruncateToInt(v[6]);
}
