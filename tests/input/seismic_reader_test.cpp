#include <gmock/gmock.h>

#include <cmath>
#include <complex>
#include <string>
#include <tuple>
#include <vector>

#include "input/reader_test_support.hpp"
#include "input/wave_resampling.hpp"

namespace {

using testing::DoubleNear;
using testing::Pointwise;

class SeismicReader : public ReaderTest {
  protected:
    // Reads the wave text with the given step and cut-off and returns what was printed.
    std::string Read(const std::string& text, double timeStep = 0.01, double cutoff = 10.0) {
        analysis.clear(0);
        analysis.timeStep = timeStep;
        analysis.cutoffFrequency = cutoff;
        const std::string path = File("wave.dat", text);
        testing::internal::CaptureStdout();
        analysis.ReadSeismic(path);
        return testing::internal::GetCapturedStdout();
    }
    const std::vector<double>& Acc() const { return analysis.Wave().acc; }
};

// Samples at 0, 0.625 and 1.75 s of 0, 100 and -80 gal; on a step of 0.25 s the wave is
// 0, 0.4, 0.8, 0.8, 0.4, 0, -0.4, -0.8 m/s2 for a factor of 1.
std::string ExactWave(const std::string& factor) {
    return "// test record\nname,0.02," + factor +
           "\n0,0\n0.3 7\nnot a sample\n0.625,100\r\n1.75,-80\n";
}
const std::vector<double> kExactAcc = {0.0, 0.4, 0.8, 0.8, 0.4, 0.0, -0.4, -0.8};

TEST_F(SeismicReader, LengthIsPaddedToPowerOfTwoAndReported) {
    EXPECT_EQ(Read("h,1,1\n0,0\n10.24,0\n"),
              "Input GAL\n"
              "FFT用にデータを2のべき乗に変更します1025から2048個へ変更します\n"
              "SeismicTime = 20.480000\n"
              " Seismic data : fmin = 0.05\tfmax = 50.00\n");
    EXPECT_EQ(analysis.SampleCount(), 1025);
    EXPECT_EQ(analysis.PaddedLength(), 2048);
    EXPECT_EQ(analysis.waveSpectrum.size(), 2048u);
    ASSERT_NE(analysis.transformHandle, nullptr);
    EXPECT_EQ(analysis.transformHandle->Length(), 2048u);
    EXPECT_EQ(analysis.frequencyCount, 205);  // lines i with i / 20.48 not above 10 Hz
    EXPECT_DOUBLE_EQ(analysis.cutoffFrequency, 10.0);
}

TEST_F(SeismicReader, PowerOfTwoLengthIsKeptAndCutoffAtOrAboveNyquistBecomesNyquist) {
    const std::tuple<double, int, double> cases[] = {{80, 513, 50}, {50, 513, 50}, {0, 1, 0}};
    for (const auto& [cutoff, lines, cutoffAfter] : cases) {
        EXPECT_EQ(
            Read("h,1,1\n0,0\n10.23,0\n", 0.01, cutoff),
            "Input GAL\nSeismicTime = 10.240000\n Seismic data : fmin = 0.10\tfmax = 50.00\n");
        EXPECT_EQ(analysis.PaddedLength(), 1024);
        EXPECT_EQ(analysis.frequencyCount, lines);
        EXPECT_DOUBLE_EQ(analysis.cutoffFrequency, cutoffAfter);
    }
}

TEST_F(SeismicReader, SamplesAreInterpolatedOnTheStepScaledFromGalAndByTheFactor) {
    const std::vector<double> twice = {0.0, 0.8, 1.6, 1.6, 0.8, 0.0, -0.8, -1.6};
    const struct {
        std::string text;
        double step;
        int samples, lines;
        std::vector<double> acc;
        const char* printed;
    } cases[] = {
        {ExactWave("1"), 0.25, 8, 5, kExactAcc, "Input GAL\nSeismicTime = 2.000000\n"},
        {ExactWave("2"), 0.25, 8, 5, twice, "Input GAL\nSeismicTime"},
        {ExactWave("two"), 0.25, 8, 5, std::vector<double>(8), "Input GAL\nSeismicTime"},
        {"a,b,1\n", 0.01, 1, 1, {0.0}, "Input GAL\nSeismicTime = 0.010000\n"},  // no samples
        // Equal sample times stop the resampling; zeros behind.
        {"h,0,1\n0,0\n0.5,1\n0.5,2\n1.0,3\n",
         0.25,
         5,
         5,
         {0, 0.005, 0.01, 0, 0, 0, 0, 0},
         "Input GAL\n地震波形が不正な時間間隔で指定されました\nFFT用"},
        // The last sample sets the length; the segment up to 10 s is cut at the end of the wave.
        {"h,0,1\n0,0\n5,1\n10,0\n3,0\n",
         1.0,
         4,
         3,
         {0, 0.002, 0.004, 0.006},
         "Input GAL\nSeismicTime = 4.000000\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_NE(Read(c.text, c.step).find(c.printed), std::string::npos);
        EXPECT_EQ(analysis.SampleCount(), c.samples);
        EXPECT_EQ(analysis.frequencyCount, c.lines);
        EXPECT_THAT(Acc(), Pointwise(DoubleNear(1e-15), c.acc));
    }
}

TEST_F(SeismicReader, SpectrumIsTheScaledDiscreteFourierTransform) {
    Read(ExactWave("1"), 0.25);
    const size_t p = Acc().size();
    for (size_t i = 0; i < p; ++i) {
        std::complex<double> sum;
        for (size_t k = 0; k < p; ++k)
            sum += Acc()[k] * std::polar(1.0, -2.0 * M_PI * double(k * i) / double(p));
        EXPECT_NEAR(std::abs(analysis.waveSpectrum[i] - sum / double(p)), 0.0, 1e-14) << i;
    }
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

using SeismicReaderDeathTest = ReaderTest;

TEST_F(SeismicReaderDeathTest, ZeroStepAndShortHeaderStopWithStatusTwo) {
    const std::tuple<const char*, double, const char*> cases[] = {
        {"h,1,1\n0,0\n1,0\n", 0.0, "^Input GAL\n時間間隔が設定されておりません\n$"},
        {"// record\nname,1\n0,0\n", 0.01, "^Input GAL\n.*wave.dat:2: .*three"},
    };
    for (const auto& [text, step, message] : cases) {
        analysis.timeStep = step;
        ExpectStop([&] { analysis.ReadSeismic(File("wave.dat", text)); }, 2, message);
    }
}

}  // namespace
