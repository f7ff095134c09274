#include "base/platform.hpp"
#include "input/model_memory.hpp"
#include "support/reader_test_support.hpp"

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
        ReadSeismic(analysis, path);
        return testing::internal::GetCapturedStdout();
    }
    const std::vector<double>& Acc() const { return analysis.Wave().acc; }
};

// Lines i with i / (P dt) not above the cut-off, which stops at the Nyquist frequency.
TEST_F(SeismicReader, LengthIsPaddedToAPowerOfTwoAndTheLinesEndAtTheCutoff) {
    const std::string padded =
        "Input GAL\nFFT用にデータを2のべき乗に変更します1025から2048個へ変更します\n"
        "SeismicTime = 20.480000\n Seismic data : fmin = 0.05\tfmax = 50.00\n";
    const std::string kept =
        "Input GAL\nSeismicTime = 10.240000\n Seismic data : fmin = 0.10\tfmax = 50.00\n";
    const std::tuple<double, double, std::string, int, size_t, int, double> cases[] = {
        {10.24, 10, padded, 1025, 2048, 205, 10},
        {10.23, 80, kept, 1024, 1024, 513, 50},
        {10.23, 50, kept, 1024, 1024, 513, 50},
        {10.23, 0, kept, 1024, 1024, 1, 0}};
    for (const auto& [end, cutoff, printed, samples, length, lines, cutoffAfter] : cases) {
        EXPECT_EQ(Read("h,1,1\n0,0\n" + std::to_string(end) + ",0\n", 0.01, cutoff), printed);
        ASSERT_NE(analysis.transformHandle, nullptr);
        EXPECT_EQ(std::make_tuple(analysis.SampleCount(), size_t(analysis.PaddedLength()),
                                  analysis.waveSpectrum.size(), analysis.transformHandle->Length(),
                                  analysis.frequencyCount),
                  std::make_tuple(samples, length, length, length, lines));
        EXPECT_DOUBLE_EQ(analysis.cutoffFrequency, cutoffAfter);
    }
}

// Samples in gal resampled on the step, scaled by 0.01 and the header's factor; spectrum = DFT / P.
TEST_F(SeismicReader, SamplesAreInterpolatedScaledAndTransformed) {
    const struct {
        std::string text;
        double step;
        int samples;
        std::vector<double> acc;
        const char* printed;
    } cases[] = {
        // 0, 100 and -80 gal at binary-exact times, a factor of 2.
        {"// record\nname,0.02,2\n0,0\n0.3 7\nno sample\n0.625,100\r\n1.75,-80\n",
         0.25,
         8,
         {0.0, 0.8, 1.6, 1.6, 0.8, 0.0, -0.8, -1.6},
         "Input GAL\nSeismicTime = 2.000000\n"},
        {"name,0.02,two\n0,0\n0.625,100\n1.75,-80\n", 0.25, 8, std::vector<double>(8),
         "Input GAL\nSeismicTime"},
        // Equal sample times stop the resampling; zeros behind.
        {"h,0,1\n0,0\n0.5,1\n0.5,2\n1.0,3\n",
         0.25,
         5,
         {0, 0.005, 0.01, 0, 0, 0, 0, 0},
         "Input GAL\n地震波形が不正な時間間隔で指定されました\nFFT用"},
        // The last sample sets the length; the segment up to 10 s is cut at the end of the wave.
        {"h,0,1\n0,0\n5,1\n10,0\n3,0\n",
         1.0,
         4,
         {0, 0.002, 0.004, 0.006},
         "Input GAL\nSeismicTime = 4.000000\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_NE(Read(c.text, c.step).find(c.printed), std::string::npos);
        EXPECT_EQ(analysis.SampleCount(), c.samples);
        EXPECT_THAT(Acc(), Pointwise(DoubleNear(1e-15), c.acc));
        const size_t p = Acc().size();
        for (size_t i = 0; i < p; ++i) {
            std::complex<double> sum;
            for (size_t k = 0; k < p; ++k)
                sum +=
                    Acc()[k] * std::polar(1.0, -2.0 * std::numbers::pi * double(k * i) / double(p));
            EXPECT_NEAR(std::abs(analysis.waveSpectrum[i] - sum / double(p)), 0.0, 1e-14) << i;
        }
    }
}

using SeismicReaderDeathTest = ReaderTest;

TEST_F(SeismicReaderDeathTest, ZeroStepAndShortHeaderStopWithStatusTwo) {
    const std::tuple<const char*, double, const char*> cases[] = {
        {"h,1,1\n0,0\n1,0\n", 0.0, "^Input GAL\n時間間隔が設定されておりません\n$"},
        {"// record\nname,1\n0,0\n", 0.01, "^Input GAL\n.*wave.dat:2: .*three"},
    };
    for (const auto& [text, step, message] : cases) {
        analysis.timeStep = step;
        ExpectStop([&] { ReadSeismic(analysis, File("wave.dat", text)); }, 2, message);
    }
}

// A record whose samples, spectrum and transform need more memory than the machine has stops
// before anything is allocated, as do nodes whose response spectra would not fit beside it.
TEST_F(SeismicReaderDeathTest, ARecordOrNodesBeyondTheMachinesMemoryStopWithStatusTwo) {
    analysis.seismicWaves.clear();
    analysis.timeStep = 1e-9;
    const std::string wave = File("wave.dat", "h,1,1\n0,0\n1,0\n");
    ExpectStop(
        [&] {
            SetMemoryBudgetBytes(1000000000);
            ReadSeismic(analysis, wave);
        },
        2,
        "wave.dat:3: time step 1e-09 and last sample time 1 give a wave of 999999991 samples, "
        "padded to 1073741824, which needs 68719.5 MB of memory, more than the 1000.0 MB of this "
        "machine\n");

    analysis = AnalysisWithWave(1024);  // 64 kB of wave, 16 kB of spectra a node
    const std::string nodes = File("nodes.dat", "0 0\n1 0\n// third\n1 1\n");
    ExpectStop(
        [&] {
            SetMemoryBudgetBytes(WaveBytes(1024) + 2 * NodeSpectraBytes(1024));
            ReadNodes(analysis, nodes);
        },
        2,
        "nodes.dat:4: node 3: the response spectra of more than 2 nodes on a wave of 1024 "
        "samples need more than the 0.1 MB of memory of this machine");
    SetMemoryBudgetBytes(WaveBytes(1024) + 3 * NodeSpectraBytes(1024));
    ReadNodes(analysis, nodes);
    SetMemoryBudgetBytes(0);
    EXPECT_EQ(analysis.nodes.size(), 3u);
}

}  // namespace
