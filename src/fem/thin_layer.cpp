// Thin-layer transmitting boundary.
//
// Within the column the displacement is interpolated in y only, u(x, y) = N(y) U(x), which turns
// the plane-strain energy per unit length of the soil beyond the edge into
//     U_x' A U_x / 2 + U_x' B1 U + U' G U / 2 - w^2 U' M U / 2,
// with A, B1, G, M integrals over the column (U_x = dU/dx). Its equation,
//     -A U_xx + (B1' - B1) U_x + (G - w^2 M + i w C) U = 0,
// has the solutions U = phi e^{-i k x} of the quadratic eigenproblem
//     (k^2 A + k B + G - w^2 M + i w C) phi = 0,    B = i (B1 - B1'),
// 2 n wavenumbers in pairs +-k. A and G - w^2 M have no x-y coupling and B has nothing else, so
// with phi = (phi_x, phi_y) and phi_y = k psi the problem becomes linear in k^2 (Kausel):
//     k^2 [Ax Bxy; 0 Ay] (phi_x, psi) = -[Cx 0; Byx Cy] (phi_x, psi),
// of size n, solved by LAPACK. Of each pair the boundary on the right keeps the mode that decays
// towards +x (Im k < 0) or, with k real, carries energy towards +x; with Phi and K its modes and
// wavenumbers, U(x) = Phi e^{-i K x} Phi^-1 U(0), and the force that holds the soil beyond at the
// edge, -(A U_x + B1 U) at x = 0, is
//     E_right U(0),    E_right = i A Phi K Phi^-1 - B1.
// The left region is the mirror image (x -> -x, which flips the sign of u_x): the same modes
// with u_y reversed, and E_left = T E_right T with T = diag(1, -1, 1, -1, ...).
#include "fem/thin_layer.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <string>

extern "C" {
void zgesv_(const int* n, const int* nrhs, std::complex<double>* a, const int* lda, int* ipiv,
            std::complex<double>* b, const int* ldb, int* info);
void zgeev_(const char* jobvl, const char* jobvr, const int* n, std::complex<double>* a,
            const int* lda, std::complex<double>* w, std::complex<double>* vl, const int* ldvl,
            std::complex<double>* vr, const int* ldvr, std::complex<double>* work, const int* lwork,
            double* rwork, int* info);
void zgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const std::complex<double>* alpha, const std::complex<double>* a, const int* lda,
            const std::complex<double>* b, const int* ldb, const std::complex<double>* beta,
            std::complex<double>* c, const int* ldc);
}

namespace {
using Complex = std::complex<double>;
constexpr Complex kI(0.0, 1.0);

int NodesOf(const ColumnLayer& layer) {
    return layer.interpolation == LayerInterpolation::Quadratic ? 3 : 2;
}

// The integrals over one layer of the products of its shape functions N_a (nodes from the top
// down) and of their derivatives by y (upward): NN[a][b] = int N_a N_b dy, NdN[a][b] = int N_a
// dN_b/dy dy, dNdN[a][b] = int dN_a/dy dN_b/dy dy. Three Gauss points integrate them exactly.
struct LayerIntegrals {
    int nodes = 0;
    double NN[3][3] = {};
    double NdN[3][3] = {};
    double dNdN[3][3] = {};
};

LayerIntegrals IntegralsOf(const ColumnLayer& layer) {
    LayerIntegrals r;
    r.nodes = NodesOf(layer);
    const double h = layer.thickness;
    const double g = std::sqrt(0.6);
    const std::array<double, 3> points{-g, 0.0, g}, weights{5.0 / 9.0, 8.0 / 9.0, 5.0 / 9.0};
    for (int q = 0; q < 3; ++q) {
        const double s = points[q];  // -1 at the top, +1 at the bottom: y = top - h (1 + s) / 2
        double N[3], dNds[3];
        if (r.nodes == 2) {
            N[0] = 0.5 * (1.0 - s), N[1] = 0.5 * (1.0 + s);
            dNds[0] = -0.5, dNds[1] = 0.5;
        } else {
            N[0] = 0.5 * s * (s - 1.0), N[1] = 1.0 - s * s, N[2] = 0.5 * s * (s + 1.0);
            dNds[0] = s - 0.5, dNds[1] = -2.0 * s, dNds[2] = s + 0.5;
        }
        const double dy = 0.5 * h * weights[q];
        for (int a = 0; a < r.nodes; ++a)
            for (int b = 0; b < r.nodes; ++b) {
                const double dNa = -2.0 / h * dNds[a], dNb = -2.0 / h * dNds[b];
                r.NN[a][b] += N[a] * N[b] * dy;
                r.NdN[a][b] += N[a] * dNb * dy;
                r.dNdN[a][b] += dNa * dNb * dy;
            }
    }
    return r;
}

void Check(bool ok, const std::string& what) {
    if (!ok) throw std::invalid_argument("thin-layer column: " + what);
}

void CheckLayers(const std::vector<ColumnLayer>& layers) {
    Check(!layers.empty(), "no layer");
    for (const ColumnLayer& l : layers) {
        Check(l.thickness > 0.0 && std::isfinite(l.thickness), "layer thickness must be > 0");
        Check(l.shearModulus.real() > 0.0 && std::isfinite(std::abs(l.shearModulus)),
              "layer shear modulus must have a positive real part");
        Check(l.poissonRatio >= 0.0 && l.poissonRatio < 0.5, "Poisson's ratio must be in [0, 0.5)");
        Check(l.density > 0.0 && std::isfinite(l.density), "layer density must be > 0");
    }
}

// Lame's lambda* of a layer.
Complex LambdaOf(const ColumnLayer& l) {
    return 2.0 * l.shearModulus * l.poissonRatio / (1.0 - 2.0 * l.poissonRatio);
}

// Calls f(firstNode, layer, integrals) for each layer, firstNode its top node in the column.
template <class F>
void ForEachLayer(const std::vector<ColumnLayer>& layers, F&& f) {
    std::size_t first = 0;
    for (const ColumnLayer& l : layers) {
        const LayerIntegrals r = IntegralsOf(l);
        f(first, l, r);
        first += static_cast<std::size_t>(r.nodes - 1);
    }
}

std::size_t NodeCountOf(const std::vector<ColumnLayer>& layers) {
    std::size_t n = 1;
    for (const ColumnLayer& l : layers) n += static_cast<std::size_t>(NodesOf(l) - 1);
    return n;
}

int Int(std::size_t n) {
    return static_cast<int>(n);
}

// Solves a X = b in place (b: n x nrhs, column-major); a is overwritten.
void Solve(std::vector<Complex>& a, std::size_t n, std::vector<Complex>& b, std::size_t nrhs) {
    const int nn = Int(n), nr = Int(nrhs);
    std::vector<int> pivots(n);
    int info = 0;
    zgesv_(&nn, &nr, a.data(), &nn, pivots.data(), b.data(), &nn, &info);
    if (info != 0)
        throw std::runtime_error("thin-layer column: singular system (zgesv info " +
                                 std::to_string(info) + ")");
}
}  // namespace

struct ThinLayerColumn::Modes {
    std::vector<Complex> k;    // n_ wavenumbers
    std::vector<Complex> phi;  // n_ x n_ column-major, column order of the degrees of freedom
};

ThinLayerColumn::ThinLayerColumn(const std::vector<ColumnLayer>& layers, const ColumnBase& base) {
    CheckLayers(layers);
    Check(base.rigid || (base.dashpotX >= 0.0 && base.dashpotY >= 0.0),
          "base dashpots must be >= 0");
    const std::size_t nodes = NodeCountOf(layers);
    depths_.assign(nodes, 0.0);
    {
        std::size_t first = 0;
        double top = 0.0;
        for (const ColumnLayer& l : layers) {
            const int k = NodesOf(l);
            for (int a = 1; a < k; ++a) depths_[first + a] = top + l.thickness * a / (k - 1);
            first += static_cast<std::size_t>(k - 1);
            top += l.thickness;
        }
    }
    m_ = base.rigid ? nodes - 1 : nodes;
    n_ = 2 * m_;
    const std::size_t n = n_, m = m_;
    // Block order (x of every node, then y); the degrees of freedom of a rigid base node are
    // dropped. Matrices below are column-major in this order.
    auto x = [&](std::size_t node) { return node; };
    auto y = [&](std::size_t node) { return m + node; };
    std::vector<Complex> A(n * n), B1(n * n), Gk(n * n), M(n * n), C(n * n);
    auto add = [&](std::vector<Complex>& to, std::size_t r, std::size_t c, Complex v) {
        to[c * n + r] += v;
    };
    ForEachLayer(layers, [&](std::size_t first, const ColumnLayer& l, const LayerIntegrals& r) {
        const Complex G = l.shearModulus, lambda = LambdaOf(l), P = lambda + 2.0 * G;
        for (int a = 0; a < r.nodes; ++a)
            for (int b = 0; b < r.nodes; ++b) {
                const std::size_t p = first + a, q = first + b;
                if (p >= m || q >= m) continue;  // the rigid base node
                add(A, x(p), x(q), P * r.NN[a][b]);
                add(A, y(p), y(q), G * r.NN[a][b]);
                add(Gk, x(p), x(q), G * r.dNdN[a][b]);
                add(Gk, y(p), y(q), P * r.dNdN[a][b]);
                add(B1, x(p), y(q), lambda * r.NdN[a][b]);  // sigma_xx from u_y,y
                add(B1, y(p), x(q), G * r.NdN[a][b]);       // sigma_xy from u_x,y
                add(M, x(p), x(q), l.density * r.NN[a][b]);
                add(M, y(p), y(q), l.density * r.NN[a][b]);
            }
    });
    if (!base.rigid) {
        add(C, x(m - 1), x(m - 1), base.dashpotX);
        add(C, y(m - 1), y(m - 1), base.dashpotY);
    }

    // The energy terms in column order, for the boundary stiffness.
    auto column = [&](std::size_t blockIndex) {
        return blockIndex < m ? 2 * blockIndex : 2 * (blockIndex - m) + 1;
    };
    a_.assign(n * n, 0.0);
    b1_.assign(n * n, 0.0);
    for (std::size_t c = 0; c < n; ++c)
        for (std::size_t r = 0; r < n; ++r) {
            a_[column(c) * n + column(r)] = A[c * n + r];
            b1_[column(c) * n + column(r)] = B1[c * n + r];
        }

    // L (k^2 side) and the right-hand sides: [Gx 0; Byx Gy], [Mx 0; 0 My] and the dashpots.
    std::vector<Complex> L = A;
    std::vector<Complex> rhs(3 * n * n);
    for (std::size_t c = 0; c < n; ++c)
        for (std::size_t r = 0; r < n; ++r) {
            const Complex Bcoef = kI * (B1[c * n + r] - B1[r * n + c]);
            if (r < m && c >= m) L[c * n + r] += Bcoef;
            rhs[c * n + r] = Gk[c * n + r] + (r >= m && c < m ? Bcoef : Complex(0.0));
            rhs[n * n + c * n + r] = M[c * n + r];
            rhs[2 * n * n + c * n + r] = C[c * n + r];
        }
    Solve(L, n, rhs, 3 * n);
    // k^2 L v = -(Gpart - w^2 M + i w C) v.
    h0_.assign(rhs.begin(), rhs.begin() + n * n);
    hm_.assign(rhs.begin() + n * n, rhs.begin() + 2 * n * n);
    hc_.assign(rhs.begin() + 2 * n * n, rhs.end());
    for (Complex& v : h0_) v = -v;
    for (Complex& v : hc_) v = -v;
}

std::size_t ThinLayerColumn::NodeCount() const {
    return depths_.size();
}
std::vector<double> ThinLayerColumn::NodeDepths() const {
    return depths_;
}
std::size_t ThinLayerColumn::BoundaryDofCount() const {
    return n_;
}

ThinLayerColumn::Modes ThinLayerColumn::OutgoingModes(double w) const {
    if (!(w > 0.0) || !std::isfinite(w))
        throw std::invalid_argument("thin-layer column: the frequency must be > 0");
    const std::size_t n = n_, m = m_;
    const int nn = Int(n);
    std::vector<Complex> H(n * n);
    for (std::size_t i = 0; i < n * n; ++i) H[i] = h0_[i] + w * w * hm_[i] + kI * w * hc_[i];

    std::vector<Complex> k2(n), vr(n * n), work(1);
    std::vector<double> rwork(2 * n);
    const char jobvl = 'N', jobvr = 'V';
    int info = 0, lwork = -1;
    Complex dummy;
    zgeev_(&jobvl, &jobvr, &nn, H.data(), &nn, k2.data(), &dummy, &nn, vr.data(), &nn, work.data(),
           &lwork, rwork.data(), &info);
    lwork = std::max(2 * nn, static_cast<int>(work[0].real()));
    work.resize(static_cast<std::size_t>(lwork));
    zgeev_(&jobvl, &jobvr, &nn, H.data(), &nn, k2.data(), &dummy, &nn, vr.data(), &nn, work.data(),
           &lwork, rwork.data(), &info);
    if (info != 0)
        throw std::runtime_error("thin-layer column: eigenproblem failed (zgeev info " +
                                 std::to_string(info) + ")");

    // An eigenvalue is taken as real when its imaginary part is below what rounding leaves on
    // the spectrum as a whole; such a wave is chosen by the direction of its energy, which is
    // the limit of vanishing damping.
    double scale = 0.0;
    for (const Complex& v : k2) scale = std::max(scale, std::abs(v));
    const double realTolerance = 1e-9 * scale;

    Modes modes;
    modes.k.resize(n);
    modes.phi.assign(n * n, 0.0);
    std::vector<Complex> phi(n);
    for (std::size_t j = 0; j < n; ++j) {
        Complex k = std::sqrt(k2[j]);
        const bool propagating = k2[j].real() > 0.0 && std::abs(k2[j].imag()) <= realTolerance;
        // The mode in column order: x from the eigenvector, y = k psi.
        for (std::size_t p = 0; p < m; ++p) {
            phi[2 * p] = vr[j * n + p];
            phi[2 * p + 1] = k * vr[j * n + m + p];
        }
        bool flip = k.imag() > 0.0;
        if (propagating) {
            // Energy flux towards +x: w/4 phi^H (2 k A + B) phi, B = i (B1 - B1').
            Complex flux = 0.0;
            for (std::size_t c = 0; c < n; ++c)
                for (std::size_t r = 0; r < n; ++r) {
                    const Complex Bcoef = kI * (b1_[c * n + r] - b1_[r * n + c]);
                    flux += std::conj(phi[r]) * (2.0 * k * a_[c * n + r] + Bcoef) * phi[c];
                }
            flip = flux.real() < 0.0;
        }
        if (flip) {  // the other of the pair: -k, with u_y reversed
            k = -k;
            for (std::size_t p = 0; p < m; ++p) phi[2 * p + 1] = -phi[2 * p + 1];
        }
        modes.k[j] = k;
        double size = 0.0;
        for (const Complex& v : phi) size = std::max(size, std::abs(v));
        for (std::size_t r = 0; r < n; ++r) modes.phi[j * n + r] = phi[r] / size;
    }
    return modes;
}

std::vector<std::complex<double>> ThinLayerColumn::Wavenumbers(double w) const {
    return OutgoingModes(w).k;
}

TransmittingBoundary ThinLayerColumn::Boundary(double w) const {
    const Modes modes = OutgoingModes(w);
    const std::size_t n = n_;
    const int nn = Int(n);
    // X = Phi K Phi^-1 from Phi' X' = K Phi'.
    std::vector<Complex> phiT(n * n), Xt(n * n);
    for (std::size_t c = 0; c < n; ++c)
        for (std::size_t r = 0; r < n; ++r) {
            phiT[c * n + r] = modes.phi[r * n + c];
            Xt[c * n + r] = modes.k[r] * modes.phi[r * n + c];
        }
    Solve(phiT, n, Xt, n);
    // E = i A X - B1 = i A Xt' - B1.
    std::vector<Complex> E = b1_;
    const Complex alpha = kI, beta = -1.0;
    const char noTrans = 'N', trans = 'T';
    zgemm_(&noTrans, &trans, &nn, &nn, &nn, &alpha, a_.data(), &nn, Xt.data(), &nn, &beta, E.data(),
           &nn);

    TransmittingBoundary result{ColumnMatrix(n), ColumnMatrix(n)};
    for (std::size_t r = 0; r < n; ++r)
        for (std::size_t c = 0; c < n; ++c) {
            const Complex v = E[c * n + r];
            result.right(r, c) = v;
            result.left(r, c) = (r + c) % 2 == 0 ? v : -v;
        }
    return result;
}

ColumnMatrix FreeFieldTractionMatrix(const std::vector<ColumnLayer>& layers, ColumnSide side) {
    CheckLayers(layers);
    const std::size_t nodes = NodeCountOf(layers);
    const double nx = side == ColumnSide::Right ? 1.0 : -1.0;
    ColumnMatrix S(2 * nodes);
    ForEachLayer(layers, [&](std::size_t first, const ColumnLayer& l, const LayerIntegrals& r) {
        for (int a = 0; a < r.nodes; ++a)
            for (int b = 0; b < r.nodes; ++b)
                S(2 * (first + a) + 1, 2 * (first + b)) += nx * l.shearModulus * r.NdN[a][b];
    });
    return S;
}
