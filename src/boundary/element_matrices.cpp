// Placeholder until this stage is built; replaced by the real implementation.
#include "boundary/element_matrices.hpp"
RealMatrix NodeCoordinateMatrix(const CElement&, const std::vector<CNode>&) { return {}; }
double StrainMatrixAt(const CElement&, const CGauss&, const std::vector<CNode>&, ComplexMatrix&) { return 0.0; }
void AssembleInertiaLoad(size_t, const std::vector<CNode>&, const std::vector<CElement>&, ComplexVector&) {}
void AssembleMassMatrix(size_t, const std::vector<int32_t>&, const std::vector<CNode>&, const std::vector<CElement>&, SparseComplexMatrix&) {}
void AssembleStiffnessMatrix(size_t, const std::vector<int32_t>&, const std::vector<CNode>&, const std::vector<CElement>&, SparseComplexMatrix&) {}
void GaussStrainHistory(const CElement&, int, const CAnalysisData&, StrainSeries&) {}
void GaussStrainHistoryPrivate(const CElement&, int, const CAnalysisData&, StrainSeries&) {}
