#include "response/motion_synthesis.hpp"

#include <omp.h>

#include "support/result_model_fixture.hpp"

namespace {

constexpr size_t kP = 64;
constexpr double kDt = 0.01;

// 50 samples: a mean, a low tone and one at line 29.5 of 64, far above the 10 lines analysed.
std::vector<double> TestWave() {
    std::vector<double> w(50);
    for (size_t j = 0; j < w.size(); ++j)
        w[j] = 0.3 + std::sin(0.2 * j) + 0.5 * std::cos(2.9 * j) - 0.01 * j;
    return w;
}

// base plus the directly summed inverse DFT of line k and its mirror at P - k (none at P/2).
std::vector<double> DirectInverse(Complex line, size_t k, std::vector<double> base) {
    for (size_t t = 0; t < base.size(); ++t) {
        const Complex term = line * std::polar(1.0, 2.0 * std::numbers::pi * double(k * t) / kP);
        base[t] += (term + (k == kP / 2 ? 0.0 : std::conj(term))).real();
    }
    return base;
}

class MotionSynthesis : public SynthesisTest {
  protected:
    MotionSynthesis() { SetWave(analysis, TestWave(), kP, kDt, 10); }

    // One direction of a node in a node-major file of (x, y) pairs.
    std::vector<double> Series(const std::string& file, size_t node, int axis) const {
        const std::vector<double> all = ReadValues<double>(file);
        std::vector<double> s(analysis.SampleCount());
        for (size_t t = 0; t < s.size(); ++t) s[t] = all.at((node * s.size() + t) * 2 + axis);
        return s;
    }

    // -w^2 times the wave's line k times the transfer value: the line of the relative acceleration.
    Complex AccelerationLine(size_t k, Complex transfer) const {
        const double w = k * 2.0 * std::numbers::pi / (kP * kDt);
        return -w * w * analysis.waveSpectrum[k] * transfer;
    }
};

// No transfer function, a line with its mirror, and the top line P/2 alone (its imaginary part
// never reaches the series); the x acceleration adds the whole input to the relative response.
TEST_F(MotionSynthesis, OneLineSpectrumMatchesDirectInverseTransform) {
    const Complex tx(0.2, -0.7), ty(-1.1, 0.4);
    const std::vector<double> zero(50, 0.0);
    const std::pair<size_t, double> cases[] = {{3, 0.0}, {3, 1.0}, {kP / 2, 1.0}};
    for (const auto& [k, scale] : cases) {
        analysis.nodes.clear();
        AddNode(analysis, 0, 0);
        analysis.nodes[0].dispX[k] = scale * tx;
        analysis.nodes[0].dispY[k] = scale * ty;
        CalcDisplacementHistory(analysis);
        CalcAccelerationHistory(analysis);
        const Complex F = analysis.waveSpectrum[k];
        const std::vector<double> expected[4] = {
            DirectInverse(F * scale * tx, k, zero), DirectInverse(F * scale * ty, k, zero),
            DirectInverse(AccelerationLine(k, scale * tx), k, TestWave()),
            DirectInverse(AccelerationLine(k, scale * ty), k, zero)};
        // Exact zeros without a transfer function; the input's round trip in the x acceleration.
        const double tolerance[4] = {1e-12 * scale, 1e-12 * scale, 1e-9 * scale + 1e-12,
                                     1e-9 * scale};
        const std::vector<double> peaks[2] = {ReadValues<double>(work_files::kMaxDisp),
                                              ReadValues<double>(work_files::kMaxAcc)};
        for (int s = 0; s < 4; ++s) {
            const auto series = Series(s < 2 ? work_files::kDisp : work_files::kAcc, 0, s % 2);
            double peak = 0.0;
            for (size_t t = 0; t < 50; ++t) {
                EXPECT_NEAR(series[t], expected[s][t], tolerance[s]) << k << ' ' << s;
                peak = std::max(peak, std::abs(expected[s][t]));
            }
            EXPECT_NEAR(peaks[s / 2].at(s % 2), peak, tolerance[s]) << k << ' ' << s;
        }
    }
}

TEST_F(MotionSynthesis, FilesHoldEveryNodesStepsAndPeaksOfTheUnpaddedPartOnly) {
    // Node 0 moves as a sine of period 64 whose crest lies in the padded tail; an older file goes.
    SetWave(analysis, std::vector<double>(3, 0.0), kP, kDt, 10);
    analysis.waveSpectrum[1] = 1.0;
    for (int i = 0; i < 3; ++i) AddNode(analysis, i, 0);
    analysis.nodes[0].dispX[1] = Complex(0.0, -0.5);
    project.Write(work_files::kDisp, std::string(1000, 'x'));
    CalcDisplacementHistory(analysis);
    EXPECT_EQ(std::filesystem::file_size(work_files::kDisp), 3u * 3 * 16);
    EXPECT_EQ(std::filesystem::file_size(work_files::kMaxDisp), 3u * 16);
    const std::vector<double> x = Series(work_files::kDisp, 0, 0);
    for (size_t t = 0; t < 3; ++t)
        EXPECT_NEAR(x[t], std::sin(2 * std::numbers::pi * t / kP), 1e-12);
    const std::vector<double> peaks = ReadValues<double>(work_files::kMaxDisp);
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
