// The thin-layer transmitting boundary of one side column: time to compute the pair of
// boundary matrices (right and left edge) for frequency lines 1 .. L, as the free-field analysis
// does for every line, with columns of 20, 40 and 100 nodes of linear and of quadratic sublayers.
// Also: the same lines over all processors (an OpenMP loop over lines), with the largest
// difference from the one-at-a-time results.
//
// The column: 30 m of soil in three strata (soft over stiff), on a rigid base, cut into equal
// sublayers; lines at w = 2 pi i / T with T = 40.96 s (line 400 is 9.8 Hz).
//
// Usage: OPENBLAS_NUM_THREADS=1 thin_layer_bench [repeats=3]
//   repeats  each measurement is repeated and the best taken, as other work on the machine only
//            ever slows a run down
// The matrices are small (40 to 200 rows): LAPACK's own threads only get in the way of the
// threads over lines, hence OPENBLAS_NUM_THREADS=1.
#include <omp.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <numbers>
#include <vector>

#include "fem/thin_layer.hpp"

namespace {
constexpr double kDuration = 40.96;

double Seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

// Processor time of the calling thread: what a line costs when the machine is shared.
double ThreadSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

// A column of the given node count (base node included).
std::vector<ColumnLayer> Column(int nodes, LayerInterpolation interpolation) {
    const int perLayer = interpolation == LayerInterpolation::Quadratic ? 2 : 1;
    const int sublayers = (nodes - 1) / perLayer;
    struct Stratum {
        double top, vs, nu, rho, h;
    };
    const Stratum strata[] = {
        {0.0, 120.0, 0.35, 1.7, 0.05}, {8.0, 220.0, 0.4, 1.9, 0.03}, {18.0, 350.0, 0.3, 2.0, 0.02}};
    const double depth = 30.0, thickness = depth / sublayers;
    std::vector<ColumnLayer> layers;
    for (int i = 0; i < sublayers; ++i) {
        const double middle = (i + 0.5) * thickness;
        const Stratum* s = &strata[0];
        for (const Stratum& t : strata)
            if (middle >= t.top) s = &t;
        const double G = s->rho * s->vs * s->vs;
        layers.push_back(
            {thickness, std::complex<double>(G, 2.0 * s->h * G), s->nu, s->rho, interpolation});
    }
    return layers;
}

double W(int line) {
    return 2.0 * std::numbers::pi * line / kDuration;
}
}  // namespace

int main(int argc, char** argv) {
    const int repeats = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    const int processors = omp_get_num_procs();
    const char* blasThreads = std::getenv("OPENBLAS_NUM_THREADS");
    std::printf(
        "thin-layer boundary, both edges per line, best of %d runs; %d processors, "
        "OPENBLAS_NUM_THREADS=%s\n",
        repeats, processors, blasThreads ? blasThreads : "(unset)");
    std::printf("%-10s %5s %5s %10s %10s %10s %10s %14s %12s %14s %10s\n", "sublayers", "nodes",
                "dofs", "1 line", "10 lines", "100 lines", "400 lines", "400, processor",
                "per line", "400, parallel", "max diff");
    for (auto interpolation : {LayerInterpolation::Linear, LayerInterpolation::Quadratic})
        for (int nodes : {21, 41, 101}) {
            const ThinLayerColumn column(Column(nodes, interpolation), ColumnBase{});
            // Lines 1 .. 400 in order, the time read after lines 1, 10, 100 and 400.
            double best[4] = {1e30, 1e30, 1e30, 1e30}, processor = 1e30;
            const int counts[4] = {1, 10, 100, 400};
            std::vector<TransmittingBoundary> serial(400);
            for (int r = 0; r < repeats; ++r) {
                const auto start = std::chrono::steady_clock::now();
                const double startProcessor = ThreadSeconds();
                for (int i = 1, c = 0; i <= 400; ++i) {
                    serial[i - 1] = column.Boundary(W(i));
                    if (i != counts[c]) continue;
                    best[c] = std::min(best[c], Seconds(start));
                    ++c;
                }
                processor = std::min(processor, ThreadSeconds() - startProcessor);
            }
            double parallel = 1e30, difference = 0.0;
            std::vector<TransmittingBoundary> lines(400);
            for (int r = 0; r < repeats; ++r) {
                const auto start = std::chrono::steady_clock::now();
#pragma omp parallel for schedule(guided, 1) num_threads(processors)
                for (int i = 1; i <= 400; ++i) lines[i - 1] = column.Boundary(W(i));
                parallel = std::min(parallel, Seconds(start));
            }
            for (int i = 0; i < 400; ++i) {  // largest entry difference over largest entry
                double largest = 0.0, apart = 0.0;
                for (size_t e = 0; e < serial[i].right.values.size(); ++e) {
                    largest = std::max(largest, std::abs(serial[i].right.values[e]));
                    apart = std::max(
                        apart, std::abs(lines[i].right.values[e] - serial[i].right.values[e]));
                }
                difference = std::max(difference, apart / largest);
            }
            std::printf(
                "%-10s %5zu %5zu %9.4fs %9.4fs %9.4fs %9.4fs %13.4fs %12.2fms %13.4fs %10.1e\n",
                interpolation == LayerInterpolation::Linear ? "linear" : "quadratic",
                column.NodeCount(), column.BoundaryDofCount(), best[0], best[1], best[2], best[3],
                processor, 1e3 * processor / 400, parallel, difference);
        }
    return 0;
}
