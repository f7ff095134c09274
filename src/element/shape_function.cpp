// Placeholder until this stage is built; replaced by the real implementation.
#include "element/shape_function.hpp"
RealMatrix DAT_ShapeFunction::GetNMatrix(const RealVector&) const { return {}; }
RealMatrix DAT_ShapeFunction::GetNMatrix(const CPoint&) const { return {}; }
RealMatrix DAT_ShapeFunction::GetNRow(const RealVector&) const { return {}; }
RealMatrix DAT_ShapeFunction::GetNRow(const CPoint&) const { return {}; }
RealVector DAT_ShapeFunction::GetNVector(const RealVector&) const { return {}; }
RealMatrix DAT_ShapeFunction::GetdNMatrix(const RealVector&) const { return {}; }
RealVector IsoParametricQuadSquare::GetNVector(const CPoint&) const { return {}; }
RealMatrix IsoParametricQuadSquare::GetdNMatrix(const CPoint&) const { return {}; }
RealVector IsoParametricSecondSquare::GetNVector(const CPoint&) const { return {}; }
RealMatrix IsoParametricSecondSquare::GetdNMatrix(const CPoint&) const { return {}; }
RealVector ShapeFuncOfSecondTriangle::GetNVector(const CPoint&) const { return {}; }
RealMatrix ShapeFuncOfSecondTriangle::GetdNMatrix(const CPoint&) const { return {}; }
