#include "element/point.hpp"

bool CPoint::IsLess(const CPoint& other) const {
    if (x == other.x) return y < other.y;
    if (y == other.y) return x < other.x;
    return y < other.y;
}

bool CPoint::IsLessPoint(const CPoint& other) const {
    return IsLess(other);
}
