#include "solve/solution_stage.hpp"

#include "solve/equivalent_linear_iteration.hpp"
#include "solve/frequency_loop.hpp"
#include "solve/line_system_parts.hpp"

void RunSolution(CAnalysisData& analysis, bool equivalentLinear,
                 const std::string& freeFieldFolder) {
    LineSystemParts parts(analysis, freeFieldFolder, SideMatrixMemoryBudget());
    FrequencyLoop loop(parts.Terms());
    RunEquivalentLinearIteration(analysis, equivalentLinear, loop);
}
