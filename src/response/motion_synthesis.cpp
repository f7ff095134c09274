#include "response/motion_synthesis.hpp"

#include <omp.h>

#include <algorithm>
#include <cmath>
#include <future>
#include <vector>

#include "response/synthesis_extent.hpp"
#include "response/work_file_writer.hpp"
#include "response/work_files.hpp"

namespace {

Complex At(const ComplexVector& v, size_t k) {
    return k < v.size() ? v[k] : Complex(0.0, 0.0);
}

// The product (ac - bd) + i(ad + bc), as the complex type gives it for finite values, without
// its recovery of infinities.
Complex Mul(Complex x, Complex y) {
    return {x.real() * y.real() - x.imag() * y.imag(), x.real() * y.imag() + x.imag() * y.real()};
}

// The x, y pairs and the peaks of one block of consecutive nodes.
struct MotionBlock {
    std::vector<double> series;
    std::vector<double> peaks;
};

}  // namespace

void FillMotionSpectra(MotionKind kind, const ComplexVector& waveSpectrum, const CNode& node,
                       double timeStep, Complex* X, Complex* Y, size_t P) {
    if (P == 0) return;
    const bool acceleration = kind == MotionKind::Acceleration;
    // The mean of the input reaches the absolute x acceleration only.
    X[0] = acceleration ? At(waveSpectrum, 0) : Complex(0.0, 0.0);
    Y[0] = Complex(0.0, 0.0);
    // Lines 1 to P/2 and their mirrors cover every other index.
    const size_t half = P / 2;
    const double lineStep = 6.283185307179586 / (static_cast<double>(P) * timeStep);
    for (size_t k = 1; k <= half; ++k) {
        const Complex f = At(waveSpectrum, k);
        const Complex ux = At(node.dispX, k);
        const Complex uy = At(node.dispY, k);
        if (acceleration) {
            // -w^2 turns the displacement transfer function into the relative acceleration;
            // the input itself is added in x, where it acts.
            const double w = static_cast<double>(k) * lineStep;
            const Complex a(-(w * w), 0.0);
            X[k] = f + Mul(f, Mul(a, ux));
            Y[k] = Mul(f, Mul(a, uy));
        } else {
            X[k] = Mul(f, ux);
            Y[k] = Mul(f, uy);
        }
        if (k != half) {
            X[P - k] = std::conj(X[k]);
            Y[P - k] = std::conj(Y[k]);
        }
    }
}

void SynthesiseNodeMotion(MotionKind kind, const CAnalysisData& analysis, const CNode& node,
                          const FourierTransform& transform, Complex* X, Complex* Y, size_t steps,
                          double* series, double* peaks) {
    const size_t P = transform.Length();
    FillMotionSpectra(kind, analysis.waveSpectrum, node, analysis.timeStep, X, Y, P);
    transform.Backward(X);
    transform.Backward(Y);
    double maxX = 0.0;
    double maxY = 0.0;
    for (size_t j = 0; j < steps; ++j) {
        const double x = X[j].real();
        const double y = Y[j].real();
        series[2 * j] = x;
        series[2 * j + 1] = y;
        // The first sample opens the search, as a largest-element search over the list would.
        if (j == 0 || maxX < std::abs(x)) maxX = std::abs(x);
        if (j == 0 || maxY < std::abs(y)) maxY = std::abs(y);
    }
    peaks[0] = maxX;
    peaks[1] = maxY;
}

void WriteMotionHistories(const CAnalysisData& analysis, MotionKind kind, size_t blockBytes) {
    const bool acceleration = kind == MotionKind::Acceleration;
    WorkFileWriter seriesFile(acceleration ? work_files::kAcc : work_files::kDisp);
    WorkFileWriter peakFile(acceleration ? work_files::kMaxAcc : work_files::kMaxDisp);

    const SynthesisExtent extent(analysis);
    const size_t P = extent.transformLength;
    const size_t steps = extent.steps;
    const size_t nodeCount = analysis.nodes.size();
    if (nodeCount == 0) return;

    std::unique_ptr<FourierTransform> own;
    const FourierTransform* transform = P > 0 ? &BackwardTransformFor(analysis, P, own) : nullptr;

    const size_t bytesPerNode = 16 * steps + 16;
    const size_t nodesPerBlock = std::clamp<size_t>(blockBytes / bytesPerNode, 1, nodeCount);
    MotionBlock blocks[2];
    for (MotionBlock& b : blocks) {
        b.series.assign(nodesPerBlock * 2 * steps, 0.0);
        b.peaks.assign(nodesPerBlock * 2, 0.0);
    }
    // Two spectra of P lines per thread, reused from node to node.
    std::vector<std::vector<Complex>> scratch(static_cast<size_t>(omp_get_max_threads()));

    // Block b is computed while block b - 1 goes to disk; the order of the records is kept
    // because one write is finished before the next begins.
    std::future<void> pending;
    int current = 0;
    for (size_t first = 0; first < nodeCount; first += nodesPerBlock) {
        const size_t count = std::min(nodesPerBlock, nodeCount - first);
        MotionBlock& block = blocks[current];
        if (transform) {
            const long long n = static_cast<long long>(count);
#pragma omp parallel for schedule(guided, 1)
            for (long long i = 0; i < n; ++i) {
                std::vector<Complex>& work = scratch[static_cast<size_t>(omp_get_thread_num())];
                if (work.size() != 2 * P) work.assign(2 * P, Complex(0.0, 0.0));
                SynthesiseNodeMotion(kind, analysis, analysis.nodes[first + i], *transform,
                                     work.data(), work.data() + P, steps,
                                     block.series.data() + 2 * steps * i,
                                     block.peaks.data() + 2 * i);
            }
        }
        if (pending.valid()) pending.get();
        pending = std::async(std::launch::async, [&seriesFile, &peakFile, &block, count, steps] {
            peakFile.PutValues(block.peaks.data(), 2 * count);
            seriesFile.PutValues(block.series.data(), 2 * steps * count);
        });
        current ^= 1;
    }
    if (pending.valid()) pending.get();
}

void CalcDisplacementHistory(const CAnalysisData& analysis) {
    WriteMotionHistories(analysis, MotionKind::Displacement);
}

void CalcAccelerationHistory(const CAnalysisData& analysis) {
    WriteMotionHistories(analysis, MotionKind::Acceleration);
}
