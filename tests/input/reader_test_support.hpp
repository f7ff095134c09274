// Helpers of the reader tests.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <string>

#include "run/analysis_data.hpp"

// For the statement of a death test: the child's standard output goes to its standard error,
// where the test can match a message that the program prints on standard output.
inline void StdoutToStderr() {
    std::fflush(stdout);
    dup2(2, 1);
}

// An analysis that holds a wave of the padded length given, so that nodes can be read.
inline CAnalysisData AnalysisWithWave(size_t paddedLength) {
    CAnalysisData analysis;
    analysis.clear(0);
    CSeismicWave wave;
    wave.acc.assign(paddedLength, 0.0);
    wave.sampleCount = static_cast<int>(paddedLength);
    analysis.seismicWaves.push_back(wave);
    return analysis;
}
