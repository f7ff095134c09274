// The shared fixture of the reader tests.
#pragma once

#include <gmock/gmock.h>
#include <unistd.h>

#include <boost/make_shared.hpp>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"
#include "support/project_fixture.hpp"

// In a death test: standard output joins standard error, where the message is matched.
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

class ReaderTest : public testing::Test {
  protected:
    // Writes a file into the project folder and gives its path.
    std::string File(const std::string& name, const std::string& text) {
        project.Write(name, text);
        return project.Path(name);
    }
    // The reader must end the run with the status and print the message (on either stream).
    static void ExpectStop(const std::function<void()>& read, int status,
                           const std::string& message) {
        SCOPED_TRACE(message);
        EXPECT_EXIT((StdoutToStderr(), read()), testing::ExitedWithCode(status), message);
    }

    ProjectFolder project;
    CAnalysisData analysis = AnalysisWithWave(8);
};
