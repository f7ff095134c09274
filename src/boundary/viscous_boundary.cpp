// Placeholder until this stage is built; replaced by the real implementation.
#include "boundary/viscous_boundary.hpp"
void AssembleViscousMatrix(SparseComplexMatrix& m, const CAnalysisData& a, bool) { m = SparseComplexMatrix(a.freeDofCount); }
