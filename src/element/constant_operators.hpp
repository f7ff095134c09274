// The process-wide constant 4 x 4 operators over the components x, y, z, xy.
#pragma once

#include "linalg/small_matrix.hpp"

extern RealMatrix gVolumeOperator;      // ones in the upper left 3 x 3 block; kept, read by nothing
extern RealMatrix gDiagOperator;        // diag(1, 1, 1, 0.5); kept, read by nothing
extern ComplexMatrix gVolumeOperatorC;  // complex twin: matrix A of the constitutive law
extern ComplexMatrix gDiagOperatorC;    // complex twin: matrix B of the constitutive law

// Builds the four operators, in the order above. Called once at the start of the program;
// also safe to call again (tests).
void BuildConstantOperators();
