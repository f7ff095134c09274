#include "fem/thin_layer.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <initializer_list>
#include <numbers>
#include <utility>
#include <vector>

extern "C" {
void zgesv_(const int* n, const int* nrhs, std::complex<double>* a, const int* lda, int* ipiv,
            std::complex<double>* b, const int* ldb, int* info);
void zheev_(const char* jobz, const char* uplo, const int* n, std::complex<double>* a,
            const int* lda, double* w, std::complex<double>* work, const int* lwork, double* rwork,
            int* info);
}

namespace {
using Complex = std::complex<double>;
constexpr double kPi = std::numbers::pi;
constexpr auto kLinear = LayerInterpolation::Linear;
constexpr auto kQuadratic = LayerInterpolation::Quadratic;

// Soil of shear-wave velocity vs, with G* = G (1 + 2 i h).
ColumnLayer Soil(double thickness, double vs, double nu, double rho, double h,
                 LayerInterpolation interpolation) {
    return {thickness, rho * vs * vs * Complex(1.0, 2.0 * h), nu, rho, interpolation};
}

// A column of strata from the top, each cut into equal sublayers.
std::vector<ColumnLayer> Column(std::initializer_list<std::pair<ColumnLayer, int>> strata) {
    std::vector<ColumnLayer> layers;
    for (auto [stratum, count] : strata) {
        stratum.thickness /= count;
        layers.insert(layers.end(), static_cast<size_t>(count), stratum);
    }
    return layers;
}

double Norm(const ColumnMatrix& m) {
    double s = 0.0;
    for (const Complex& v : m.values) s += std::norm(v);
    return std::sqrt(s);
}

// ---- Continuum: elastic layer of thickness H on a rigid base, free on top (plane strain) ----
//
// With potentials phi (P) and i psi (SV) times e^{-i k x}, u_x = i (-k phi + psi'), u_y = phi' -
// k psi, sigma_yy = -(lambda (p^2 + k^2) + 2 mu p^2) phi - 2 mu k psi', sigma_xy / (i mu) =
// -2 k phi' + (k^2 - q^2) psi, with p^2 = (w/vp)^2 - k^2, q^2 = (w/vs)^2 - k^2 and
// phi = a1 C_p + a2 S_p, psi = b1 C_q + b2 S_q, C_s(y) = cos(sqrt(s) y), S_s(y) =
// sin(sqrt(s) y) / sqrt(s): real for real k. The wavenumbers of the layer are the real zeros of
// the determinant of u_x = u_y = 0 at y = 0 and sigma_yy = sigma_xy = 0 at y = H.
double CosLike(double s, double y) {
    return s >= 0.0 ? std::cos(std::sqrt(s) * y) : std::cosh(std::sqrt(-s) * y);
}
double SinLike(double s, double y) {
    if (s == 0.0) return y;
    return s > 0.0 ? std::sin(std::sqrt(s) * y) / std::sqrt(s)
                   : std::sinh(std::sqrt(-s) * y) / std::sqrt(-s);
}

double RigidBaseDeterminant(double k, double w, double vs, double vp, double H) {
    const double mu = vs * vs, lambda = vp * vp - 2.0 * mu;  // per unit density
    const double p2 = w * w / (vp * vp) - k * k, q2 = w * w / (vs * vs) - k * k;
    const double Cp = CosLike(p2, H), Sp = SinLike(p2, H), Cq = CosLike(q2, H), Sq = SinLike(q2, H);
    const double c3 = -(lambda * (p2 + k * k) + 2.0 * mu * p2);
    const double m[4][4] = {
        {-k, 0.0, 0.0, 1.0},
        {0.0, 1.0, -k, 0.0},
        {c3 * Cp, c3 * Sp, 2.0 * mu * k * q2 * Sq, -2.0 * mu * k * Cq},
        {2.0 * k * p2 * Sp, -2.0 * k * Cp, (k * k - q2) * Cq, (k * k - q2) * Sq},
    };
    auto det3 = [&](int r0, int r1, int r2, int c0, int c1, int c2) {
        return m[r0][c0] * (m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1]) -
               m[r0][c1] * (m[r1][c0] * m[r2][c2] - m[r1][c2] * m[r2][c0]) +
               m[r0][c2] * (m[r1][c0] * m[r2][c1] - m[r1][c1] * m[r2][c0]);
    };
    return m[0][0] * det3(1, 2, 3, 1, 2, 3) - m[0][1] * det3(1, 2, 3, 0, 2, 3) +
           m[0][2] * det3(1, 2, 3, 0, 1, 3) - m[0][3] * det3(1, 2, 3, 0, 1, 2);
}

// The positive real wavenumbers below 1.2 w / vs (a Rayleigh-like mode travels no slower than
// 0.87 vs), by a fine scan for sign changes and bisection.
std::vector<double> LayerWavenumbers(double w, double vs, double vp, double H) {
    auto f = [&](double k) { return RigidBaseDeterminant(k, w, vs, vp, H); };
    const double top = 1.2 * w / vs;
    const int steps = 20000;
    std::vector<double> roots;
    for (int i = 0; i < steps; ++i) {
        double a = top * (i + 0.5) / steps, b = top * (i + 1.5) / steps;
        if ((f(a) > 0.0) == (f(b) > 0.0)) continue;
        for (int it = 0; it < 200 && b - a > 1e-15 * b; ++it) {
            const double c = 0.5 * (a + b);
            ((f(c) > 0.0) == (f(a) > 0.0) ? a : b) = c;
        }
        roots.push_back(0.5 * (a + b));
    }
    return roots;
}

// The real wavenumbers of a thin-layer column, as |k|, ascending.
std::vector<double> PropagatingWavenumbers(const ThinLayerColumn& column, double w) {
    std::vector<double> ks;
    for (const Complex& k : column.Wavenumbers(w))
        if (std::abs(k.imag()) < 1e-8 * std::abs(k)) ks.push_back(std::abs(k.real()));
    std::sort(ks.begin(), ks.end());
    return ks;
}

// ---- The soil beyond the edge as a long strip of plane-strain finite elements ----
//
// Equal elements of width dx, each linear in x and interpolated like its layer in y, consistent
// mass, exact integration. The dynamic stiffness of the strip on its two end columns (near end,
// then far end, each in the column's order) is condensed by joining copies of the strip:
// 2^doublings elements. With the far end fixed and the soil damped, the stiffness at an end
// converges to the transmitting boundary as dx -> 0: the near end to the right edge's, the far
// end to the left edge's.

// K on the degrees of freedom `keep`, the others condensed out.
ColumnMatrix Condensed(const ColumnMatrix& K, const std::vector<size_t>& keep) {
    std::vector<size_t> drop;
    for (size_t i = 0; i < K.size; ++i)
        if (std::find(keep.begin(), keep.end(), i) == keep.end()) drop.push_back(i);
    const int nd = static_cast<int>(drop.size()), nk = static_cast<int>(keep.size());
    std::vector<Complex> Kdd(drop.size() * drop.size()), X(drop.size() * keep.size());
    for (size_t r = 0; r < drop.size(); ++r) {
        for (size_t c = 0; c < drop.size(); ++c) Kdd[c * nd + r] = K(drop[r], drop[c]);
        for (size_t c = 0; c < keep.size(); ++c) X[c * nd + r] = K(drop[r], keep[c]);
    }
    std::vector<int> pivots(drop.size());
    int info = 0;
    zgesv_(&nd, &nk, Kdd.data(), &nd, pivots.data(), X.data(), &nd, &info);
    EXPECT_EQ(info, 0);
    ColumnMatrix S(keep.size());
    for (size_t r = 0; r < keep.size(); ++r)
        for (size_t c = 0; c < keep.size(); ++c) {
            S(r, c) = K(keep[r], keep[c]);
            for (size_t l = 0; l < drop.size(); ++l) S(r, c) -= K(keep[r], drop[l]) * X[c * nd + l];
        }
    return S;
}

// One element: K - w^2 M + i w C on its two end columns (d degrees of freedom each).
ColumnMatrix StripElement(const std::vector<ColumnLayer>& layers, const ColumnBase& base, double w,
                          double dx, size_t d) {
    ColumnMatrix K(2 * d);
    const double g = std::sqrt(0.6), pts[3] = {-g, 0.0, g}, wts[3] = {5.0 / 9, 8.0 / 9, 5.0 / 9};
    size_t first = 0;
    for (const ColumnLayer& l : layers) {
        const int ny = l.interpolation == kQuadratic ? 3 : 2;
        const double h = l.thickness;
        // Lagrange polynomial of node a (from the top, at s = -1 ... 1) and its derivative by y
        // (central differences are exact on these polynomials).
        auto Y = [&](int a, double s) {
            double v = 1.0;
            for (int b = 0; b < ny; ++b)
                if (b != a) v *= (s - (2.0 * b / (ny - 1) - 1)) / (2.0 * (a - b) / (ny - 1));
            return v;
        };
        auto dY = [&](int a, double s) {
            return (Y(a, s + 1e-3) - Y(a, s - 1e-3)) / 2e-3 * (-2 / h);
        };
        const Complex G = l.shearModulus,
                      L = 2.0 * G * l.poissonRatio / (1.0 - 2.0 * l.poissonRatio);
        for (int p = 0; p < 3; ++p)
            for (int q = 0; q < 3; ++q) {
                const double xi = pts[p], s = pts[q], weight = wts[p] * wts[q] * dx * h / 4;
                for (int e = 0; e < 2; ++e)
                    for (int a = 0; a < ny; ++a)
                        for (int f = 0; f < 2; ++f)
                            for (int b = 0; b < ny; ++b) {
                                const size_t i = 2 * (first + a), j = 2 * (first + b);
                                if (i >= d || j >= d) continue;  // the rigid base
                                const double X[2] = {(1 - xi) / 2, (1 + xi) / 2};
                                const double dX[2] = {-1 / dx, 1 / dx};
                                // Shape functions i, j and their derivatives by x and y.
                                const double Ni = X[e] * Y(a, s), Nj = X[f] * Y(b, s);
                                const double xI = dX[e] * Y(a, s), yI = X[e] * dY(a, s);
                                const double xJ = dX[f] * Y(b, s), yJ = X[f] * dY(b, s);
                                const Complex mass = w * w * l.density * Ni * Nj;
                                const size_t r = e * d + i, c = f * d + j;
                                K(r, c) += weight * ((L + 2.0 * G) * xI * xJ + G * yI * yJ - mass);
                                K(r, c + 1) += weight * (L * xI * yJ + G * yI * xJ);
                                K(r + 1, c) += weight * (L * yI * xJ + G * xI * yJ);
                                K(r + 1, c + 1) +=
                                    weight * ((L + 2.0 * G) * yI * yJ + G * xI * xJ - mass);
                            }
            }
        first += static_cast<size_t>(ny - 1);
    }
    for (int e = 0; !base.rigid && e < 2; ++e)  // dashpots along the base: i w c int X_e X_f dx
        for (int f = 0; f < 2; ++f) {
            const Complex iwdx(0.0, w * dx * (e == f ? 1.0 / 3 : 1.0 / 6));
            K(e * d + d - 2, f * d + d - 2) += iwdx * base.dashpotX;
            K(e * d + d - 1, f * d + d - 1) += iwdx * base.dashpotY;
        }
    return K;
}

// The boundary of both edges from the strip, extrapolated to dx -> 0 from dx and dx / 2 (the
// error goes with dx^2).
TransmittingBoundary StripBoundary(const std::vector<ColumnLayer>& layers, const ColumnBase& base,
                                   double w, double dx, int doublings) {
    const size_t d = ThinLayerColumn(layers, base).BoundaryDofCount();
    std::vector<size_t> ends;
    for (size_t i = 0; i < d; ++i) ends.push_back(i);
    for (size_t i = 0; i < d; ++i) ends.push_back(2 * d + i);
    auto strip = [&](double width, int times) {
        ColumnMatrix P = StripElement(layers, base, w, width, d);
        for (int t = 0; t < times; ++t) {  // two copies in series, the middle column condensed
            ColumnMatrix two(3 * d);
            for (size_t shift : {size_t{0}, d})
                for (size_t r = 0; r < 2 * d; ++r)
                    for (size_t c = 0; c < 2 * d; ++c) two(r + shift, c + shift) += P(r, c);
            P = Condensed(two, ends);
        }
        return P;
    };
    const ColumnMatrix coarse = strip(dx, doublings), fine = strip(dx / 2, doublings + 1);
    TransmittingBoundary b{ColumnMatrix(d), ColumnMatrix(d)};
    for (size_t r = 0; r < d; ++r)
        for (size_t c = 0; c < d; ++c) {
            b.right(r, c) = (4.0 * fine(r, c) - coarse(r, c)) / 3.0;
            b.left(r, c) = (4.0 * fine(d + r, d + c) - coarse(d + r, d + c)) / 3.0;
        }
    return b;
}

// Smallest eigenvalue of the Hermitian part of -i E, (E - E^H) / 2i: the power that the soil
// beyond takes from an edge moving as u is w/2 u^H ((E - E^H) / 2i) u.
double LeastAbsorption(const ColumnMatrix& E) {
    const size_t n = E.size;
    std::vector<Complex> h(n * n);
    for (size_t r = 0; r < n; ++r)
        for (size_t c = 0; c < n; ++c)
            h[c * n + r] = (E(r, c) - std::conj(E(c, r))) / Complex(0.0, 2.0);
    const int nn = static_cast<int>(n), lwork = 4 * nn;
    std::vector<double> values(n), rwork(3 * n);
    std::vector<Complex> work(static_cast<size_t>(lwork));
    int info = 0;
    zheev_("N", "U", &nn, h.data(), &nn, values.data(), work.data(), &lwork, rwork.data(), &info);
    EXPECT_EQ(info, 0);
    return values.front();
}
}  // namespace

// The real wavenumbers of a uniform undamped layer on a rigid base (10 m, vs 100 m/s, nu 0.3,
// 10 Hz: three waves travel) converge to the roots of the continuum's dispersion determinant as
// the sublayers are halved: as h^2 with linear sublayers, as h^4 with quadratic ones.
TEST(ThinLayerWavenumbers, ConvergeToTheLayerOnARigidBase) {
    const double H = 10.0, vs = 100.0, nu = 0.3, w = 2.0 * kPi * 10.0;
    const double vp = vs * std::sqrt(2.0 * (1.0 - nu) / (1.0 - 2.0 * nu));
    const std::vector<double> exact = LayerWavenumbers(w, vs, vp, H);
    ASSERT_EQ(exact.size(), 3u);
    struct Case {
        LayerInterpolation interpolation;
        double orderLow, orderHigh, finestError;
    };
    for (const Case& c : {Case{kLinear, 1.9, 2.1, 2e-3}, Case{kQuadratic, 3.8, 4.3, 1e-6}}) {
        std::vector<double> errors;
        for (int count : {10, 20, 40}) {
            const ThinLayerColumn column(
                Column({{Soil(H, vs, nu, 1.8, 0.0, c.interpolation), count}}), ColumnBase{});
            const std::vector<double> ks = PropagatingWavenumbers(column, w);
            ASSERT_EQ(ks.size(), exact.size()) << count << " sublayers";
            double error = 0.0;
            for (size_t i = 0; i < ks.size(); ++i)
                error = std::max(error, std::abs(ks[i] - exact[i]) / exact[i]);
            errors.push_back(error);
        }
        for (size_t i = 1; i < errors.size(); ++i) {
            const double order = std::log2(errors[i - 1] / errors[i]);
            EXPECT_GT(order, c.orderLow) << "refinement " << i;
            EXPECT_LT(order, c.orderHigh) << "refinement " << i;
        }
        EXPECT_LT(errors.back(), c.finestError);
        std::printf("  %s sublayers 10/20/40: largest relative error %.2e %.2e %.2e\n",
                    c.interpolation == kLinear ? "linear" : "quadratic", errors[0], errors[1],
                    errors[2]);
    }
}

// The boundary against the soil beyond as a long damped strip of plane-strain elements: both
// edges, layered columns, linear and quadratic sublayers, rigid and viscous base.
TEST(ThinLayerBoundary, MatchesALongStripOfPlaneStrainElements) {
    const ColumnLayer soft = Soil(4.0, 100.0, 0.3, 1.8, 0.1, kLinear);
    const ColumnLayer stiff = Soil(6.0, 200.0, 0.4, 2.0, 0.08, kLinear);
    ColumnLayer softQ = soft, stiffQ = stiff;
    softQ.interpolation = stiffQ.interpolation = kQuadratic;
    struct Case {
        const char* name;
        std::vector<ColumnLayer> layers;
        ColumnBase base;
        double hz;
    };
    const Case cases[] = {
        {"linear, rigid base", Column({{soft, 2}, {stiff, 3}}), {}, 6.0},
        {"quadratic, viscous base",
         Column({{softQ, 1}, {stiffQ, 2}}),
         {false, 2.0 * 400.0, 2.0 * 900.0},
         6.0},
        {"mixed, rigid base, low frequency", Column({{soft, 2}, {stiffQ, 1}}), {}, 1.5},
    };
    for (const Case& c : cases) {
        const double w = 2.0 * kPi * c.hz;
        const TransmittingBoundary thin = ThinLayerColumn(c.layers, c.base).Boundary(w);
        const TransmittingBoundary strip = StripBoundary(c.layers, c.base, w, 0.01, 17);
        ASSERT_EQ(thin.right.size, strip.right.size) << c.name;
        for (auto side : {&TransmittingBoundary::right, &TransmittingBoundary::left}) {
            ColumnMatrix difference = thin.*side;
            for (size_t i = 0; i < difference.values.size(); ++i)
                difference.values[i] -= (strip.*side).values[i];
            EXPECT_LT(Norm(difference), 1e-7 * Norm(thin.*side))
                << c.name << (side == &TransmittingBoundary::right ? ", right" : ", left");
        }
    }
}

// Over a sweep of frequencies the boundary is complex-symmetric and only ever absorbs energy:
// (E - E^H) / 2i has no negative eigenvalue, on both sides. Undamped columns test the choice
// of the travelling waves (a wave taken in the wrong direction gives energy back).
TEST(ThinLayerBoundary, IsSymmetricAndOnlyAbsorbs) {
    struct Case {
        const char* name;
        std::vector<ColumnLayer> layers;
        ColumnBase base;
    };
    const Case cases[] = {
        {"undamped, nu 0.25, linear",
         Column({{Soil(10.0, 100.0, 0.25, 1.8, 0.0, kLinear), 12}}),
         {}},
        {"undamped, nu 0.45, quadratic",
         Column({{Soil(10.0, 100.0, 0.45, 1.8, 0.0, kQuadratic), 6}}),
         {}},
        {"layered, damped, viscous base",
         Column({{Soil(3.0, 80.0, 0.35, 1.6, 0.05, kQuadratic), 3},
                 {Soil(7.0, 250.0, 0.3, 2.0, 0.02, kLinear), 7}}),
         {false, 2.0 * 500.0, 2.0 * 1000.0}},
    };
    for (const Case& c : cases) {
        const ThinLayerColumn column(c.layers, c.base);
        for (double hz = 0.25; hz <= 30.0; hz += 0.75) {
            const TransmittingBoundary b = column.Boundary(2.0 * kPi * hz);
            for (const ColumnMatrix* E : {&b.right, &b.left}) {
                const double size = Norm(*E);
                double asymmetry = 0.0;
                for (size_t r = 0; r < E->size; ++r)
                    for (size_t s = 0; s < r; ++s)
                        asymmetry = std::max(asymmetry, std::abs((*E)(r, s) - (*E)(s, r)));
                EXPECT_LT(asymmetry, 1e-9 * size) << c.name << ", " << hz << " Hz";
                EXPECT_GT(LeastAbsorption(*E), -1e-9 * size) << c.name << ", " << hz << " Hz";
            }
        }
    }
}

// A free field in uniform shear, u_x = g y, loads each edge node in y with n_x G g times its
// share of the edge (linear sublayer: h/2 at each end; quadratic: h/6, 2h/3, h/6), and nothing
// in x.
TEST(ThinLayerFreeFieldTraction, UniformShearLoadsTheNodesByTheirShareOfTheEdge) {
    const Complex G1(20.0, 2.0), G2(50.0, 1.0);
    const std::vector<ColumnLayer> layers = {{2.0, G1, 0.3, 1.8, kLinear},
                                             {4.0, G2, 0.4, 2.0, kQuadratic},
                                             {1.0, G1, 0.3, 1.8, kLinear}};
    // The nodes from the top: shared between layers, a quadratic layer's middle one between.
    const ThinLayerColumn column(layers, ColumnBase{});
    ASSERT_EQ(column.NodeDepths(), (std::vector<double>{0.0, 2.0, 4.0, 6.0, 7.0}));
    EXPECT_EQ(column.BoundaryDofCount(), 8u);  // none at a rigid base
    const double y[] = {7.0, 5.0, 3.0, 1.0, 0.0};
    const Complex expected[] = {G1, G1 + 2.0 * G2 / 3.0, 8.0 * G2 / 3.0, 2.0 * G2 / 3.0 + G1 / 2.0,
                                G1 / 2.0};
    const double g = 0.01;
    for (auto [side, nx] : {std::pair{ColumnSide::Right, 1.0}, std::pair{ColumnSide::Left, -1.0}}) {
        const ColumnMatrix S = FreeFieldTractionMatrix(layers, side);
        ASSERT_EQ(S.size, 10u);
        for (size_t r = 0; r < S.size; ++r) {
            Complex force = 0.0;
            for (size_t p = 0; p < 5; ++p)
                force += S(r, 2 * p) * (g * y[p]) + S(r, 2 * p + 1) * 1.0;
            const Complex want = r % 2 == 0 ? Complex(0.0) : nx * g * expected[r / 2];
            EXPECT_NEAR(std::abs(force - want), 0.0, 1e-12) << "row " << r << ", n_x " << nx;
        }
    }
}
