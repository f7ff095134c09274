#include "response/motion_synthesis.hpp"

#include <gtest/gtest.h>
#include <omp.h>

#include <cmath>
#include <numbers>

#include "response/synthesis_model.hpp"
#include "response/work_files.hpp"
#include "support/project_fixture.hpp"

namespace {

constexpr size_t kP = 64;
constexpr double kDt = 0.01;

// A wave of 50 samples with a mean, a low tone and a tone near the top of the band.
std::vector<double> TestWave() {
    std::vector<double> w(50);
    for (size_t j = 0; j < w.size(); ++j)
        w[j] = 0.3 + std::sin(0.2 * j) + 0.5 * std::cos(2.9 * j) - 0.01 * j;
    return w;
}

class MotionSynthesis : public ::testing::Test {
  protected:
    ProjectFolder project;
    WorkingDirectory cwd{project.Root()};
    CAnalysisData analysis;

    void SetUp() override { SetWave(analysis, TestWave(), kP, kDt, 10); }

    // Node series as (x, y) pairs of a node-major f64 file.
    std::vector<double> Series(const std::string& file, size_t node, int axis) {
        const std::vector<double> all = ReadF64(file);
        const size_t steps = analysis.SampleCount();
        std::vector<double> s(steps);
        for (size_t t = 0; t < steps; ++t) s[t] = all.at((node * steps + t) * 2 + axis);
        return s;
    }

    void Synthesise() {
        analysis.CalcDisplacementHistory();
        analysis.CalcAccelerationHistory();
    }
};

// x(t) of a spectrum with the single line k (and its mirror): the inverse DFT summed directly.
std::vector<double> DirectInverse(Complex lineValue, size_t k, size_t steps) {
    std::vector<double> x(steps);
    for (size_t t = 0; t < steps; ++t) {
        Complex sum = 0.0;
        for (size_t m = 0; m < kP; ++m) {
            Complex v = 0.0;
            if (m == k) v = lineValue;
            if (m == kP - k && k != kP / 2) v = std::conj(lineValue);
            sum += v * std::polar(1.0, 2.0 * std::numbers::pi * double(m * t) / double(kP));
        }
        x[t] = sum.real();
    }
    return x;
}

TEST_F(MotionSynthesis, ZeroSpectraGiveNoDisplacementAndTheInputAsXAcceleration) {
    AddNode(analysis, 0, 0);
    AddNode(analysis, 1, 0);
    Synthesise();
    const std::vector<double> wave = TestWave();
    for (size_t n = 0; n < 2; ++n) {
        for (double v : Series(work_files::kDisp, n, 0)) EXPECT_EQ(v, 0.0);
        for (double v : Series(work_files::kDisp, n, 1)) EXPECT_EQ(v, 0.0);
        const std::vector<double> ax = Series(work_files::kAcc, n, 0);
        for (size_t t = 0; t < wave.size(); ++t) EXPECT_NEAR(ax[t], wave[t], 1e-12);
        for (double v : Series(work_files::kAcc, n, 1)) EXPECT_EQ(v, 0.0);
    }
    const std::vector<double> maxAcc = ReadF64(work_files::kMaxAcc);
    ASSERT_EQ(maxAcc.size(), 4u);
    double largest = 0;
    for (double v : wave) largest = std::max(largest, std::abs(v));
    EXPECT_NEAR(maxAcc[0], largest, 1e-12);
    EXPECT_EQ(maxAcc[1], 0.0);
    EXPECT_EQ(ReadF64(work_files::kMaxDisp), std::vector<double>(4, 0.0));
}

TEST_F(MotionSynthesis, OneLineSpectrumMatchesDirectInverseTransform) {
    const size_t k = 3;
    const int n = AddNode(analysis, 0, 0);
    analysis.nodes[n].dispX[k] = Complex(0.2, -0.7);
    analysis.nodes[n].dispY[k] = Complex(-1.1, 0.4);
    Synthesise();
    const Complex F = analysis.waveSpectrum[k];
    const double w = k * 2.0 * std::numbers::pi / (kP * kDt);
    const size_t steps = analysis.SampleCount();

    const std::vector<double> dx = DirectInverse(F * Complex(0.2, -0.7), k, steps);
    const std::vector<double> dy = DirectInverse(F * Complex(-1.1, 0.4), k, steps);
    const std::vector<double> ay = DirectInverse(-w * w * F * Complex(-1.1, 0.4), k, steps);
    // The x acceleration is the input plus the relative response of this line.
    const std::vector<double> wave = TestWave();
    const std::vector<double> ax = DirectInverse(-w * w * F * Complex(0.2, -0.7), k, steps);
    const auto disp =
        std::make_pair(Series(work_files::kDisp, 0, 0), Series(work_files::kDisp, 0, 1));
    const auto acc = std::make_pair(Series(work_files::kAcc, 0, 0), Series(work_files::kAcc, 0, 1));
    for (size_t t = 0; t < steps; ++t) {
        EXPECT_NEAR(disp.first[t], dx[t], 1e-12);
        EXPECT_NEAR(disp.second[t], dy[t], 1e-12);
        EXPECT_NEAR(acc.first[t], wave[t] + ax[t], 1e-9);
        EXPECT_NEAR(acc.second[t], ay[t], 1e-9);
    }
}

TEST_F(MotionSynthesis, TopLineHasNoMirrorAndItsImaginaryPartDoesNotReachTheSeries) {
    const int n = AddNode(analysis, 0, 0);
    analysis.nodes[n].dispX[kP / 2] = Complex(0.0, 5.0);
    analysis.nodes[n].dispY[kP / 2] = Complex(2.0, 0.0);
    analysis.CalcDisplacementHistory();
    const Complex F = analysis.waveSpectrum[kP / 2];
    const std::vector<double> x = Series(work_files::kDisp, 0, 0);
    const std::vector<double> y = Series(work_files::kDisp, 0, 1);
    for (size_t t = 0; t < x.size(); ++t) {
        const double sign = t % 2 ? -1.0 : 1.0;
        EXPECT_NEAR(x[t], sign * (F * Complex(0.0, 5.0)).real(), 1e-12);
        EXPECT_NEAR(y[t], sign * (F * 2.0).real(), 1e-12);
    }
}

TEST_F(MotionSynthesis, XAccelerationKeepsTheInputAboveTheCutOff) {
    // The transfer function covers the analysed lines only; the wave's tone at 2.9 rad per
    // sample (line 29.5 of 64) lies far above them and must pass unchanged into the x series.
    const int n = AddNode(analysis, 0, 0);
    for (int k = 1; k < analysis.frequencyCount; ++k)
        analysis.nodes[n].dispX[k] = Complex(0.01, 0.02 * k);
    analysis.CalcAccelerationHistory();
    const std::vector<double> ax = Series(work_files::kAcc, 0, 0);
    std::vector<double> expected = TestWave();
    for (int k = 1; k < analysis.frequencyCount; ++k) {
        const double w = k * 2.0 * std::numbers::pi / (kP * kDt);
        const Complex line = -w * w * analysis.waveSpectrum[k] * Complex(0.01, 0.02 * k);
        const std::vector<double> part = DirectInverse(line, k, ax.size());
        for (size_t t = 0; t < ax.size(); ++t) expected[t] += part[t];
    }
    for (size_t t = 0; t < ax.size(); ++t) EXPECT_NEAR(ax[t], expected[t], 1e-9);
}

TEST_F(MotionSynthesis, FilesHoldEveryNodesStepsAndPeaksOfTheUnpaddedPartOnly) {
    // Three samples padded to 64; the node's x motion is a sine of one period over 64 samples,
    // whose crest lies in the padded tail.
    SetWave(analysis, std::vector<double>(3, 0.0), kP, kDt, 10);
    analysis.waveSpectrum[1] = 1.0;
    for (int i = 0; i < 3; ++i) AddNode(analysis, i, 0);
    analysis.nodes[0].dispX[1] = Complex(0.0, -0.5);
    analysis.CalcDisplacementHistory();
    EXPECT_EQ(std::filesystem::file_size(work_files::kDisp), 3u * 3 * 16);
    EXPECT_EQ(std::filesystem::file_size(work_files::kMaxDisp), 3u * 16);
    const std::vector<double> x = Series(work_files::kDisp, 0, 0);
    for (size_t t = 0; t < 3; ++t)
        EXPECT_NEAR(x[t], std::sin(2 * std::numbers::pi * t / kP), 1e-12);
    const std::vector<double> peaks = ReadF64(work_files::kMaxDisp);
    EXPECT_NEAR(peaks[0], std::sin(4 * std::numbers::pi / kP), 1e-12);
    EXPECT_EQ(peaks[2], 0.0);
}

TEST_F(MotionSynthesis, BlocksAndThreadsGiveTheSameBytesAsOneNodeAtATime) {
    for (int i = 0; i < 37; ++i) {
        const int n = AddNode(analysis, i, 0);
        for (int k = 1; k < 10; ++k) {
            analysis.nodes[n].dispX[k] = Complex(std::sin(i + k), std::cos(3 * i - k));
            analysis.nodes[n].dispY[k] = Complex(0.1 * k, -0.01 * i);
        }
    }
    const int threads = omp_get_max_threads();
    omp_set_num_threads(1);
    WriteMotionHistories(analysis, MotionKind::Acceleration, 1);
    const std::string serial = project.Read(work_files::kAcc);
    const std::string serialPeaks = project.Read(work_files::kMaxAcc);
    omp_set_num_threads(std::max(threads, 3));
    WriteMotionHistories(analysis, MotionKind::Acceleration, 5 * 50 * 16);
    omp_set_num_threads(threads);
    EXPECT_EQ(serial.size(), 37u * 50 * 16);
    EXPECT_TRUE(project.Read(work_files::kAcc) == serial);
    EXPECT_TRUE(project.Read(work_files::kMaxAcc) == serialPeaks);
}

}  // namespace
