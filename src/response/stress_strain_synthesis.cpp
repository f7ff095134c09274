// Placeholder until this stage is built; replaced by the real implementation.
#include "run/analysis_data.hpp"
void CAnalysisData::CalcStressStrainSerial() {}
void CAnalysisData::RunStressStrainGroups(int, const std::vector<uint32_t>&) {}
