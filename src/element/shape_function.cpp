#include "element/shape_function.hpp"

namespace {

CNode NaturalPoint(const RealVector& xiEta) {
    return CNode(xiEta[0], xiEta[1], 0.0);
}

// A 2 x n matrix from the derivative rows by xi and by eta, in node order.
RealMatrix DerivativeRows(std::initializer_list<double> byXi, std::initializer_list<double> byEta) {
    RealMatrix dN(2, static_cast<uint32_t>(byXi.size()));
    uint32_t j = 0;
    for (double v : byXi) dN(0, j++) = v;
    j = 0;
    for (double v : byEta) dN(1, j++) = v;
    return dN;
}

}  // namespace

// --- Forms shared by every kind ---

RealMatrix DAT_ShapeFunction::GetNMatrix(const RealVector& xiEta) const {
    return GetNMatrix(NaturalPoint(xiEta));
}

RealMatrix DAT_ShapeFunction::GetNMatrix(const CPoint& p) const {
    const RealVector n = GetNVector(p);
    RealMatrix m(2, static_cast<uint32_t>(2 * n.size()));
    for (uint32_t j = 0; j < n.size(); ++j) {
        m(0, 2 * j) = n[j];
        m(1, 2 * j + 1) = n[j];
    }
    return m;
}

RealMatrix DAT_ShapeFunction::GetNRow(const RealVector& xiEta) const {
    return GetNRow(NaturalPoint(xiEta));
}

RealMatrix DAT_ShapeFunction::GetNRow(const CPoint& p) const {
    const RealVector n = GetNVector(p);
    RealMatrix row(1, static_cast<uint32_t>(n.size()));
    row.data = n.data;
    return row;
}

RealVector DAT_ShapeFunction::GetNVector(const RealVector& xiEta) const {
    return GetNVector(NaturalPoint(xiEta));
}

RealMatrix DAT_ShapeFunction::GetdNMatrix(const RealVector& xiEta) const {
    return GetdNMatrix(NaturalPoint(xiEta));
}

// --- 4-node quadrilateral ---

RealVector IsoParametricQuadSquare::GetNVector(const CPoint& p) const {
    const double xi = p.x, eta = p.y;
    return RealVector{(1 - xi) * (1 - eta) / 4, (1 + xi) * (1 - eta) / 4, (1 + xi) * (1 + eta) / 4,
                      (1 - xi) * (1 + eta) / 4};
}

RealMatrix IsoParametricQuadSquare::GetdNMatrix(const CPoint& p) const {
    const double xi = p.x, eta = p.y;
    return DerivativeRows({-(1 - eta) / 4, (1 - eta) / 4, (1 + eta) / 4, -(1 + eta) / 4},
                          {-(1 - xi) / 4, -(1 + xi) / 4, (1 + xi) / 4, (1 - xi) / 4});
}

// --- 8-node quadrilateral ---

RealVector IsoParametricSecondSquare::GetNVector(const CPoint& p) const {
    const double xi = p.x, eta = p.y;
    return RealVector{(1 - xi) * (1 - eta) * (-1 - xi - eta) / 4,
                      (1 + xi) * (1 - eta) * (xi - 1 - eta) / 4,
                      (1 + xi) * (1 + eta) * (xi - 1 + eta) / 4,
                      (1 - xi) * (1 + eta) * (eta - 1 - xi) / 4,
                      (1 - xi * xi) * (1 - eta) / 2,
                      (1 - eta * eta) * (1 + xi) / 2,
                      (1 - xi * xi) * (1 + eta) / 2,
                      (1 - eta * eta) * (1 - xi) / 2};
}

RealMatrix IsoParametricSecondSquare::GetdNMatrix(const CPoint& p) const {
    const double xi = p.x, eta = p.y;
    return DerivativeRows(
        {(1 - eta) * (2 * xi + eta) / 4, (1 - eta) * (2 * xi - eta) / 4,
         (1 + eta) * (2 * xi + eta) / 4, (1 + eta) * (2 * xi - eta) / 4, -(1 - eta) * xi,
         (1 - eta * eta) / 2, -(1 + eta) * xi, -(1 - eta * eta) / 2},
        {(1 - xi) * (2 * eta + xi) / 4, (1 + xi) * (2 * eta - xi) / 4,
         (1 + xi) * (2 * eta + xi) / 4, (1 - xi) * (2 * eta - xi) / 4, -(1 - xi * xi) / 2,
         -(1 + xi) * eta, (1 - xi * xi) / 2, -(1 - xi) * eta});
}

// --- 6-node triangle, area coordinates with L = 1 - xi - eta ---

RealVector ShapeFuncOfSecondTriangle::GetNVector(const CPoint& p) const {
    const double xi = p.x, eta = p.y;
    const double L = 1 - xi - eta;
    return RealVector{(2 * xi - 1) * xi, (2 * eta - 1) * eta, (2 * L - 1) * L,
                      4 * eta * L,       4 * L * xi,          4 * xi * eta};
}

RealMatrix ShapeFuncOfSecondTriangle::GetdNMatrix(const CPoint& p) const {
    const double xi = p.x, eta = p.y;
    const double L = 1 - xi - eta;
    return DerivativeRows({4 * xi - 1, 0.0, 1 - 4 * L, -4 * eta, 4 * L - 4 * xi, 4 * eta},
                          {0.0, 4 * eta - 1, 1 - 4 * L, 4 * L - 4 * eta, -4 * xi, 4 * xi});
}
