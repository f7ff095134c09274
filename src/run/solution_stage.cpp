// Placeholder until this stage is built; replaced by the real implementation.
#include "run/solution_stage.hpp"
void RunSolution(CAnalysisData&, const CRunControl&, const std::string&) {}
