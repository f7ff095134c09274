// Placeholder until this stage is built; replaced by the real implementation.
#include "run/output_stages.hpp"
void RunOutputStages(CAnalysisData&, const CRunControl&, const std::string&, const std::string&) {}
