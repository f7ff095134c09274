// Shape functions of the three element kinds.
#pragma once

#include "element/point.hpp"
#include "linalg/small_matrix.hpp"

class DAT_ShapeFunction {
  public:
    int nodeCount = 0;

    explicit DAT_ShapeFunction(int n) : nodeCount(n) {}
    virtual ~DAT_ShapeFunction() = default;

    // Displacement interpolation, 2 x 2n: row 0 (N1, 0, N2, 0, ...), row 1 (0, N1, 0, N2, ...).
    virtual RealMatrix GetNMatrix(const RealVector& xiEta) const;
    virtual RealMatrix GetNMatrix(const CPoint& p) const;
    // N1 .. Nn as one row.
    virtual RealMatrix GetNRow(const RealVector& xiEta) const;
    virtual RealMatrix GetNRow(const CPoint& p) const;
    // N1 .. Nn as a vector.
    virtual RealVector GetNVector(const CPoint& p) const = 0;
    virtual RealVector GetNVector(const RealVector& xiEta) const;
    // Derivatives, 2 x n: row 0 by xi, row 1 by eta.
    virtual RealMatrix GetdNMatrix(const RealVector& xiEta) const;
    virtual RealMatrix GetdNMatrix(const CPoint& p) const = 0;
};

// 4-node quadrilateral: nodes at (-1,-1), (1,-1), (1,1), (-1,1).
class IsoParametricQuadSquare : public DAT_ShapeFunction {
  public:
    explicit IsoParametricQuadSquare(int n = 4) : DAT_ShapeFunction(n) {}
    using DAT_ShapeFunction::GetdNMatrix;
    using DAT_ShapeFunction::GetNVector;
    RealVector GetNVector(const CPoint& p) const override;
    RealMatrix GetdNMatrix(const CPoint& p) const override;
};

// 8-node quadrilateral: corners as the 4-node one, then mid-sides (0,-1), (1,0), (0,1), (-1,0).
class IsoParametricSecondSquare : public DAT_ShapeFunction {
  public:
    explicit IsoParametricSecondSquare(int n = 8) : DAT_ShapeFunction(n) {}
    using DAT_ShapeFunction::GetdNMatrix;
    using DAT_ShapeFunction::GetNVector;
    RealVector GetNVector(const CPoint& p) const override;
    RealMatrix GetdNMatrix(const CPoint& p) const override;
};

// 6-node triangle in area coordinates: (1,0), (0,1), (0,0), then mid-sides 2-3, 3-1, 1-2.
class ShapeFuncOfSecondTriangle : public DAT_ShapeFunction {
  public:
    explicit ShapeFuncOfSecondTriangle(int n = 6) : DAT_ShapeFunction(n) {}
    using DAT_ShapeFunction::GetdNMatrix;
    using DAT_ShapeFunction::GetNVector;
    RealVector GetNVector(const CPoint& p) const override;
    RealMatrix GetdNMatrix(const CPoint& p) const override;
};
