// Points of the mesh: nodes with their response spectra, and integration points.
#pragma once

#include "linalg/small_matrix.hpp"

class CPoint {
  public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    ComplexVector dispX;  // spectrum of the x response, one value a frequency line
    ComplexVector dispY;  // spectrum of the y response

    CPoint() = default;
    CPoint(double px, double py, double pz) : x(px), y(py), z(pz) {}
    virtual ~CPoint() = default;
    CPoint(const CPoint&) = default;
    CPoint& operator=(const CPoint&) = default;
    CPoint(CPoint&&) = default;
    CPoint& operator=(CPoint&&) = default;

    // Orders points by y, then by x (exact comparisons).
    virtual bool IsLess(const CPoint& other) const;
    virtual bool IsLessPoint(const CPoint& other) const;
};

class CNode : public CPoint {
  public:
    using CPoint::CPoint;
};

// An integration point: natural coordinates in x, y, a weight and the initial stress (x, y, z, xy).
class CGauss : public CPoint {
  public:
    double weight = 0.0;
    RealVector stress = RealVector(4);

    CGauss() = default;
    CGauss(double px, double py, double w) : CPoint(px, py, 0.0), weight(w) {}
};
