// Energy-transmitting side boundary of a layered soil column (Lysmer and Waas), by the thin-layer
// method, and the constant matrix of the free-field shear traction on the same column.
//
// The column is the vertical edge of the model: layers from the top down, each interpolated in
// the vertical direction like the element edges that lie on it (linear: the edge of a 4-node
// quadrilateral; quadratic: the edge of an 8-node quadrilateral or a 6-node triangle). Adjacent
// layers share their interface node. The soil beyond the edge is taken as laterally uniform and
// semi-infinite, with the same layers, and the motion is plane strain with the time factor
// e^{i w t}, so that a term i w C is a dashpot and Im G* > 0 is material damping.
//
// Degrees of freedom: column node j (j = 0 at the top, counting down) owns degree 2 j (x,
// horizontal) and 2 j + 1 (y, vertical, upward as in the mesh). Units are those of the model,
// used consistently (for instance MPa, m, MPa s2/m2): the matrices are forces per unit length
// out of plane per unit displacement, like the element matrices.
#pragma once

#include <complex>
#include <cstddef>
#include <vector>

enum class LayerInterpolation {
    Linear,     // two nodes: top and bottom
    Quadratic,  // three nodes: top, middle, bottom
};

struct ColumnLayer {
    double thickness = 0.0;             // > 0
    std::complex<double> shearModulus;  // G*, damping included; Re G* > 0
    double poissonRatio = 0.0;          // 0 <= nu < 0.5; lambda* = 2 G* nu / (1 - 2 nu)
    double density = 0.0;               // > 0
    LayerInterpolation interpolation = LayerInterpolation::Linear;
};

// The condition at the base node of the column (the bottom of the last layer).
struct ColumnBase {
    // Rigid: the base node is fixed in x and y and has no degrees of freedom in the boundary
    // stiffness. Otherwise the node stays, held by dashpots along the base of the soil beyond
    // the edge: force per unit length of base per unit velocity (for an elastic half-space under
    // the column, rho Vs in x and rho Vp in y).
    bool rigid = true;
    double dashpotX = 0.0;
    double dashpotY = 0.0;
};

// Which edge of the model: the right edge (greatest x) has the soil beyond it towards +x, the
// left edge (least x) towards -x.
enum class ColumnSide { Right, Left };

// A dense square complex matrix, row by row: entry (r, c) at values[r * size + c].
struct ColumnMatrix {
    std::size_t size = 0;
    std::vector<std::complex<double>> values;

    explicit ColumnMatrix(std::size_t n = 0) : size(n), values(n * n) {}
    std::complex<double>& operator()(std::size_t r, std::size_t c) { return values[r * size + c]; }
    const std::complex<double>& operator()(std::size_t r, std::size_t c) const {
        return values[r * size + c];
    }
};

// The dynamic stiffness of the soil beyond both edges at one frequency: the force that the soil
// beyond an edge exerts on the edge nodes is -E (u - u_ff), u_ff the free-field motion. Both
// matrices are complex-symmetric; they differ only in the sign of the x-y coupling terms.
struct TransmittingBoundary {
    ColumnMatrix right;
    ColumnMatrix left;
};

// The layer matrices of one column, assembled once; the boundary of each frequency is then one
// eigenproblem of the size of the boundary's degrees of freedom. Invalid layers or base throw
// std::invalid_argument. The object is immutable after construction: frequencies may be
// computed from many threads at once.
class ThinLayerColumn {
  public:
    ThinLayerColumn(const std::vector<ColumnLayer>& layers, const ColumnBase& base);

    // Nodes of the column, the base node included.
    std::size_t NodeCount() const;
    // Depth of each node below the top of the column.
    std::vector<double> NodeDepths() const;
    // Rows and columns of the boundary stiffness: 2 per node, without the base node on a rigid
    // base. They are the first degrees of freedom of the column in its order.
    std::size_t BoundaryDofCount() const;

    // Dynamic stiffness of the soil beyond the right and the left edge at circular frequency
    // w > 0 (rad/s). Throws std::invalid_argument for w <= 0 and std::runtime_error when the
    // eigenproblem fails.
    TransmittingBoundary Boundary(double w) const;

    // The horizontal wavenumbers of the modes that the right boundary keeps, one per degree of
    // freedom, for the waves u(x) = phi e^{-i k x}: Im k < 0 (decaying towards +x), and for a
    // real k (undamped soil) the sign of the group velocity, so that energy travels towards +x.
    // The left boundary keeps the same modes mirrored. In no particular order.
    std::vector<std::complex<double>> Wavenumbers(double w) const;

  private:
    struct Modes;
    Modes OutgoingModes(double w) const;

    std::vector<double> depths_;  // of every node
    std::size_t n_ = 0;           // boundary degrees of freedom
    std::size_t m_ = 0;           // boundary nodes: n_ = 2 m_
    // Over the boundary degrees of freedom in column order (column-major, n_ x n_): the
    // coefficient of k^2 and the x-y coupling of the energy, U_x' A U_x / 2 + U_x' B1 U.
    std::vector<std::complex<double>> a_, b1_;
    // The eigenproblem in k^2, in blocks (all x, then all y), column-major n_ x n_: at frequency
    // w its matrix is h0_ + w^2 hm_ + i w hc_.
    std::vector<std::complex<double>> h0_, hm_, hc_;
};

// The constant matrix of the free-field shear traction on an edge, over all nodes of the column
// (the base node included, whatever the base): the free field ux(y) (x only) exerts on the edge
// the forces S ux. Row the y degree of freedom of node p, column the x degree of freedom of
// node q: n_x times the integral over the edge of N_p G* dN_q/dy, with n_x = +1 on the right
// edge and -1 on the left; every other entry is 0.
ColumnMatrix FreeFieldTractionMatrix(const std::vector<ColumnLayer>& layers, ColumnSide side);
