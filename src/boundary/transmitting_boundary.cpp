// Placeholder until this stage is built; replaced by the real implementation.
#include "boundary/transmitting_boundary.hpp"
void ReadFixedEMatrix(SparseComplexMatrix&, const std::string&, const CAnalysisData&) {}
void ReadFrequencyEMatrix(SparseComplexMatrix&, int, const std::string&, const CAnalysisData&) {}
struct FrequencyEMatrixStore::Impl { SparseComplexMatrix pattern; };
FrequencyEMatrixStore::FrequencyEMatrixStore(const std::string&, const CAnalysisData& a, uint64_t) : impl_(new Impl) { impl_->pattern = SparseComplexMatrix(a.freeDofCount); }
FrequencyEMatrixStore::~FrequencyEMatrixStore() = default;
const SparseComplexMatrix& FrequencyEMatrixStore::Pattern() const { return impl_->pattern; }
SparseComplexMatrix FrequencyEMatrixStore::Line(int) const { return impl_->pattern; }
