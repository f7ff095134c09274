#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <string>
#include <vector>

#include "input/reader_test_support.hpp"
#include "input/wave_resampling.hpp"
#include "run/analysis_data.hpp"
#include "support/project_fixture.hpp"

namespace {

class SeismicReader : public testing::Test {
  protected:
    // Reads the wave text with the given step and cut-off and returns what was printed.
    std::string Read(const std::string& text, double timeStep = 0.01, double cutoff = 10.0) {
        project.Write("wave.dat", text);
        analysis.clear(0);
        analysis.timeStep = timeStep;
        analysis.cutoffFrequency = cutoff;
        testing::internal::CaptureStdout();
        analysis.ReadSeismic(project.Path("wave.dat"));
        return testing::internal::GetCapturedStdout();
    }
    // For a death test: the same, with standard output sent to standard error.
    void ReadPrintingOnStderr(const std::string& text, double timeStep) {
        project.Write("wave.dat", text);
        analysis.clear(0);
        analysis.timeStep = timeStep;
        StdoutToStderr();
        analysis.ReadSeismic(project.Path("wave.dat"));
    }
    const std::vector<double>& Acc() const { return analysis.Wave().acc; }

    ProjectFolder project;
    CAnalysisData analysis;
};

// Samples on binary-exact times with a step of 0.25 s: 0, 0.625 and 1.75 s at 0, 100 and -80
// gal. The wave on the step is 0, 0.4, 0.8, 0.8, 0.4, 0, -0.4, -0.8 m/s2 for a factor of 1.
std::string ExactWave(const std::string& factor) {
    return "// test record\nname,0.02," + factor +
           "\n0,0\n0.3 7\nnot a sample\n0.625,100\r\n1.75,-80\n";
}
const std::vector<double> kExactAcc = {0.0, 0.4, 0.8, 0.8, 0.4, 0.0, -0.4, -0.8};

TEST_F(SeismicReader, LengthIsPaddedToPowerOfTwoAndReported) {
    const std::string out = Read("h,1,1\n0,0\n10.24,0\n");
    EXPECT_EQ(out,
              "Input GAL\n"
              "FFT用にデータを2のべき乗に変更します1025から2048個へ変更します\n"
              "SeismicTime = 20.480000\n"
              " Seismic data : fmin = 0.05\tfmax = 50.00\n");
    EXPECT_EQ(analysis.SampleCount(), 1025);
    EXPECT_EQ(analysis.PaddedLength(), 2048);
    EXPECT_EQ(analysis.waveSpectrum.size(), 2048u);
    ASSERT_NE(analysis.transformHandle, nullptr);
    EXPECT_EQ(analysis.transformHandle->Length(), 2048u);
    // Lines i with i / 20.48 not above 10 Hz.
    EXPECT_EQ(analysis.frequencyCount, 205);
    EXPECT_DOUBLE_EQ(analysis.cutoffFrequency, 10.0);
}

TEST_F(SeismicReader, PowerOfTwoLengthIsNotPadded) {
    const std::string out = Read("h,1,1\n0,0\n10.23,0\n");
    EXPECT_EQ(out,
              "Input GAL\n"
              "SeismicTime = 10.240000\n"
              " Seismic data : fmin = 0.10\tfmax = 50.00\n");
    EXPECT_EQ(analysis.SampleCount(), 1024);
    EXPECT_EQ(analysis.PaddedLength(), 1024);
}

TEST_F(SeismicReader, CutoffAtOrAboveNyquistBecomesNyquist) {
    Read("h,1,1\n0,0\n10.23,0\n", 0.01, 80.0);
    EXPECT_EQ(analysis.frequencyCount, 513);
    EXPECT_DOUBLE_EQ(analysis.cutoffFrequency, 50.0);

    Read("h,1,1\n0,0\n10.23,0\n", 0.01, 50.0);
    EXPECT_EQ(analysis.frequencyCount, 513);

    Read("h,1,1\n0,0\n10.23,0\n", 0.01, 0.0);
    EXPECT_EQ(analysis.frequencyCount, 1);  // frequency 0 alone
    EXPECT_DOUBLE_EQ(analysis.cutoffFrequency, 0.0);
}

TEST_F(SeismicReader, SamplesAreInterpolatedOnTheStepAndScaledFromGal) {
    Read(ExactWave("1"), 0.25);
    EXPECT_EQ(analysis.SampleCount(), 8);
    ASSERT_EQ(Acc().size(), kExactAcc.size());
    for (size_t k = 0; k < kExactAcc.size(); ++k) EXPECT_NEAR(Acc()[k], kExactAcc[k], 1e-15);
}

TEST_F(SeismicReader, AmplitudeFactorScalesTheWave) {
    Read(ExactWave("2"), 0.25);
    for (size_t k = 0; k < kExactAcc.size(); ++k) EXPECT_NEAR(Acc()[k], 2 * kExactAcc[k], 1e-15);

    Read(ExactWave("two"), 0.25);
    for (double a : Acc()) EXPECT_EQ(a, 0.0);
}

TEST_F(SeismicReader, SpectrumIsTheScaledDiscreteFourierTransform) {
    Read(ExactWave("1"), 0.25);
    const size_t p = Acc().size();
    const double pi = std::acos(-1.0);
    for (size_t i = 0; i < p; ++i) {
        std::complex<double> sum;
        for (size_t k = 0; k < p; ++k)
            sum += Acc()[k] * std::polar(1.0, -2.0 * pi * double(k * i) / double(p));
        EXPECT_NEAR(std::abs(analysis.waveSpectrum[i] - sum / double(p)), 0.0, 1e-14) << i;
    }
}

TEST_F(SeismicReader, HeaderWithoutSamplesGivesOneZeroSample) {
    const std::string out = Read("a,b,1\n", 0.01, 10.0);
    EXPECT_EQ(analysis.SampleCount(), 1);
    EXPECT_EQ(Acc(), std::vector<double>{0.0});
    EXPECT_EQ(analysis.frequencyCount, 1);
    EXPECT_NE(out.find("SeismicTime = 0.010000\n"), std::string::npos);
}

TEST_F(SeismicReader, EqualSampleTimesStopTheResamplingWithZerosBehind) {
    const std::string out = Read("h,0,1\n0,0\n0.5,1\n0.5,2\n1.0,3\n", 0.25);
    EXPECT_NE(out.find("Input GAL\n地震波形が不正な時間間隔で指定されました\nFFT用"),
              std::string::npos);
    EXPECT_EQ(analysis.SampleCount(), 5);
    const std::vector<double> expected = {0.0, 0.005, 0.01, 0.0, 0.0, 0.0, 0.0, 0.0};
    ASSERT_EQ(Acc().size(), expected.size());
    for (size_t k = 0; k < expected.size(); ++k) EXPECT_NEAR(Acc()[k], expected[k], 1e-15);
}

TEST_F(SeismicReader, SamplesOutOfTimeOrderStayInsideTheWave) {
    // The last sample sets the length (4 steps of 1 s); the segment up to 10 s would reach past.
    Read("h,0,1\n0,0\n5,1\n10,0\n3,0\n", 1.0);
    EXPECT_EQ(analysis.SampleCount(), 4);
    const std::vector<double> expected = {0.0, 0.002, 0.004, 0.006};
    for (size_t k = 0; k < expected.size(); ++k) EXPECT_NEAR(Acc()[k], expected[k], 1e-15);
}

TEST(WaveResampling, RunningIndexCarriesAcrossSegments) {
    // A segment before the start is passed over; each new segment starts at k * step.
    std::vector<double> acc(4, -1.0);
    EXPECT_TRUE(ResampleLinear({-1.0, 0.0, 1.5, 3.0}, {9.0, 0.0, 1.5, 0.0}, 1.0, 0.0, 3.0, acc));
    EXPECT_EQ(acc, (std::vector<double>{0.0, 1.0, 1.0, 0.0}));
    EXPECT_EQ(PowerOfTwoAtLeast(1), 1u);
    EXPECT_EQ(PowerOfTwoAtLeast(1025), 2048u);
    EXPECT_DOUBLE_EQ(ResampledLength(0.0, 0.0, 0.01), 1.0);
}

using SeismicReaderDeathTest = SeismicReader;

TEST_F(SeismicReaderDeathTest, ZeroTimeStepStopsTheRun) {
    EXPECT_EXIT(ReadPrintingOnStderr("h,1,1\n0,0\n1,0\n", 0.0), testing::ExitedWithCode(2),
                "^Input GAL\n時間間隔が設定されておりません\n$");
}

TEST_F(SeismicReaderDeathTest, HeaderNeedsThreeFields) {
    EXPECT_EXIT(ReadPrintingOnStderr("// record\nname,1\n0,0\n", 0.01), testing::ExitedWithCode(2),
                "^Input GAL\n.*wave.dat:2: .*three");
}

TEST_F(SeismicReaderDeathTest, MissingFileIsAReadingError) {
    EXPECT_EXIT(
        {
            StdoutToStderr();
            analysis.ReadSeismic("no/such/wave.dat");
        },
        testing::ExitedWithCode(0), "^SesmicData:Reading error\n$");
}

}  // namespace
