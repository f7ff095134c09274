#include "solve/solution_stage.hpp"

#include "base/ranks.hpp"
#include "solve/equivalent_linear_iteration.hpp"
#include "solve/frequency_loop.hpp"
#include "solve/line_system_parts.hpp"

void RunSolution(CAnalysisData& analysis, bool equivalentLinear,
                 const std::string& freeFieldFolder) {
    const WorkShare share = WorkShare::OfThisRank();
    // The ranks of a machine share its memory as they share its lines.
    LineSystemParts parts(analysis, freeFieldFolder,
                          SideMatrixMemoryBudget() / static_cast<uint64_t>(ranks::CountOnMachine()),
                          share);
    // Up to here every rank has read the same files; from here on each does its own share.
    ranks::EndSharedPreparation();
    FrequencyLoop loop(parts.Terms(), share);
    RunEquivalentLinearIteration(analysis, equivalentLinear, loop);
}
