#include "run/solution_stage.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "run/line_vectors.hpp"
#include "run/soil_column.hpp"

namespace {

// Surface over base acceleration of a uniform damped layer on a rigid base, 1 / cos(k* H) with
// k* = w sqrt(rho / G*).
double LayerAmplification(double w, Complex Gstar) {
    const Complex k = w * std::sqrt(Complex(SoilColumn::kDensity, 0.0) / Gstar);
    return std::abs(1.0 / std::cos(k * SoilColumn::kDepth));
}

// Largest relative difference between the column's transfer function and the closed form,
// line by line up to 12 Hz. The solved displacement is relative to the base, for a unit base
// acceleration, so the surface acceleration is 1 - w^2 u.
double ColumnError(int nodesPerElement, int layers) {
    SoilColumn column(nodesPerElement, layers);
    std::vector<double> acc(1024, 0.0);
    acc[1] = 1.0;
    column.SetWave(acc, 0.01, 12.0);
    column.Solve(false);
    const Complex Gstar = column.analysis.elements.front().material->Gstar;
    const double duration = 1024 * 0.01;
    double worst = 0.0, peak = 0.0;
    for (int i = 1; i < column.analysis.frequencyCount; ++i) {
        const double w = LineCircularFrequency(i, duration);
        const double fe = std::abs(1.0 - w * w * column.TopNode().dispX[i]);
        const double exact = LayerAmplification(w, Gstar);
        worst = std::max(worst, std::abs(fe - exact) / exact);
        peak = std::max(peak, fe);
    }
    // The first mode, Vs / 4H = 2.28 Hz, is among the lines: about 1 / (h pi / 2) there.
    EXPECT_GT(peak, 10.0);
    return worst;
}

// The error of the mesh is its dispersion: the wave number of a discretised wave is off by a
// relative (k h)^2 / 24 for linear elements and by far less for quadratic ones; near a resonance
// the amplitude error is that shift over the damping ratio. With 40 linear elements over 20 m,
// 12 Hz has 30 elements to a wavelength (k h = 0.21): a wave number error of 2e-3, up to 4 % of
// the amplitude at the flank of the third mode (1.9 % found). Halving the elements quarters it.
TEST(SoilColumnPhysics, FourNodeColumnAmplifiesAsTheClosedForm) {
    const double coarse = ColumnError(4, 40);
    EXPECT_LT(coarse, 0.04);
    EXPECT_LT(ColumnError(4, 80), coarse / 3.0);
}

// Quadratic elements of twice the size, 15 elements (30 node spacings) to a wavelength at
// 12 Hz, have a dispersion error of order (k h)^4: within 0.1 % (0.02 % and 0.006 % found).
TEST(SoilColumnPhysics, EightNodeColumnAmplifiesAsTheClosedForm) {
    EXPECT_LT(ColumnError(8, 20), 1e-3);
}

TEST(SoilColumnPhysics, SixNodeColumnAmplifiesAsTheClosedForm) {
    EXPECT_LT(ColumnError(6, 20), 1e-3);
}

}  // namespace
