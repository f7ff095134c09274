// Everything that comes from the finite elements themselves: the strain matrix at an
// integration point, the consistent mass matrix, the complex stiffness matrix, the inertia load
// of a unit horizontal base acceleration, and the strain time histories of one point.
#pragma once

#include <array>
#include <vector>

#include "linalg/small_matrix.hpp"
#include "linalg/sparse_complex_matrix.hpp"
#include "model/analysis_data.hpp"
#include "model/element.hpp"

// Four complex series of P samples: strain x, y, z (left as it was) and engineering shear xy.
using StrainSeries = std::array<ComplexVector, 4>;

// Row j: x and y of the element's node j (n x 2).
RealMatrix NodeCoordinateMatrix(const CElement& element, const std::vector<CNode>& nodes);

// detJ, sign kept, of the element's mapping at a point given in natural coordinates (x, y).
double JacobianDeterminantAt(const CElement& element, const CPoint& natural,
                             const std::vector<CNode>& nodes);

// Fills the complex 4 x 2n strain matrix B at the point and returns detJ (sign kept).
double StrainMatrixAt(const CElement& element, const CGauss& point, const std::vector<CNode>& nodes,
                      ComplexMatrix& B);

// Adds -rho N_j w detJ into the x places of inertiaLoad (two entries per node).
void AssembleInertiaLoad(size_t elementCount, const std::vector<CNode>& nodes,
                         const std::vector<CElement>& elements, ComplexVector& inertiaLoad);

// Clears and fills the consistent mass matrix over the equations.
void AssembleMassMatrix(size_t elementCount, const std::vector<int32_t>& equationMap,
                        const std::vector<CNode>& nodes, const std::vector<CElement>& elements,
                        SparseComplexMatrix& massMatrix);

// Clears and fills the complex stiffness matrix from the materials' current D.
void AssembleStiffnessMatrix(size_t elementCount, const std::vector<int32_t>& equationMap,
                             const std::vector<CNode>& nodes, const std::vector<CElement>& elements,
                             SparseComplexMatrix& stiffnessMatrix);

// Time histories of the strain at integration point g of the element, from the node spectra
// times the wave's spectrum, through analysis.transformHandle. Parallel over frequency lines.
// A point number beyond the element's points ends the run with status -1.
void GaussStrainHistory(const CElement& element, int g, const CAnalysisData& analysis,
                        StrainSeries& strainSeries);

// The same result, computed sequentially in the calling thread with a transform of its own;
// for callers that are parallel iterations already.
void GaussStrainHistoryPrivate(const CElement& element, int g, const CAnalysisData& analysis,
                               StrainSeries& strainSeries);
