// Placeholder until this stage is built; replaced by the real implementation.
#include "run/analysis_data.hpp"
void CAnalysisData::ReadSelfWeightStress(const std::string&) {}
