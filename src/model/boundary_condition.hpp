// Boundary conditions: single-node constraints and viscous dashpot rows on boundary edges.
#pragma once

#include "element/point.hpp"
#include "linalg/small_matrix.hpp"

class CBoundaryCond {
  public:
    int node = 0;
    CNode value;  // the two values of a plain line in x and y; kept as data
    int typeCode = 0;

    CBoundaryCond() = default;
    CBoundaryCond(int n, double vx, double vy, int code)
        : node(n), value(vx, vy, 0.0), typeCode(code) {}
    virtual ~CBoundaryCond() = default;
};

// One row of a consistent edge dashpot matrix: the row node's degree of freedom in `direction`,
// coupled to the same direction of two or three edge nodes with term2..term4.
class CBCVisco : public CBoundaryCond {
  public:
    int edgeNodeCount = 2;
    int rowNode = 0;
    Complex coefficient;
    Complex term1;  // computed and kept; never enters a matrix
    int direction = 0;
    Complex term2;
    Complex term3;
    Complex term4;
    int edgeNode1 = 0;
    int edgeNode2 = 0;
    int edgeNode3 = -1;
};
