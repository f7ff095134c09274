#include "run/run_control.hpp"

#include <omp.h>

#include <fstream>
#include <string>

#include "base/console.hpp"
#include "base/platform.hpp"
#include "base/ranks.hpp"
#include "element/constant_operators.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"
#include "run/output_stages.hpp"
#include "solve/model_preparation.hpp"
#include "solve/solution_stage.hpp"

namespace {
// All processors but one work; never fewer than one worker.
void SetWorkerThreads() {
    const int workers = ProcessorCount() - 1;
    omp_set_num_threads(workers > 0 ? workers : 1);
}

}  // namespace

void CRunControl::ReadFlags(const std::string& flagPath) {
    RunFlags flags;
    flags.outputLimit = outputLimit;
    flags.singleStepOutput = singleStepOutput;
    flags = ReadRunFlags(flagPath, flags);
    formatDate = flags.formatDate;
    outputLimit = flags.outputLimit;
    equivalentLinear = flags.equivalentLinear;
    singleStepOutput = flags.singleStepOutput;
}

void CRunControl::runAnalysis() {
    // In a job the ranks of one machine share its processors while they solve.
    if (ranks::Count() > 1)
        omp_set_num_threads(ranks::SolutionWorkers());
    else
        SetWorkerThreads();
    CAnalysisData analysis;
    analysis.clear(0);
    analysis.formatDate = formatDate;

    ReadFileList(analysis, inputPath, folderPath);

    const std::string dynFolder = folderPath + "dyn/";
    const std::string outputFolder = folderPath + "output/";
    const std::string freeFieldFolder = folderPath + "output_ff/";
    if (ranks::Leads()) {
        CreateFolder(dynFolder);
        CreateFolder(outputFolder);
    }

    const size_t dofCount = 2 * analysis.nodes.size();
    analysis.dofFixed.assign(dofCount, 0);
    analysis.dofSpare.assign(dofCount, 0);
    analysis.equationMap.assign(dofCount, 0);

    GivePrivateMaterials(analysis);
    ReadSelfWeightStress(analysis, folderPath + "output0.inp");
    DispBoundary(analysis);
    NumberEquations(analysis);

    RunSolution(analysis, equivalentLinear, freeFieldFolder);
    // The output stages are rank 0's alone, on all the processors of its machine.
    if (!ranks::Leads()) return;
    SetWorkerThreads();
    console::OutLine("");

    RunOutputStages(analysis, *this, dynFolder, outputFolder);
}

namespace {
void TouchMarker(const char* name) {
    std::ofstream(name, std::ios::trunc);
}
}  // namespace

int RunProgram() {
    BuildConstantOperators();
    const std::string folder = ReadProjectFolder("config_VARNEK.txt");
    CRunControl run(folder + "input_VARNEK.inp", folder);
    run.ReadFlags(folder + "Flag_VARNEK.inp");
    if (ranks::Leads()) TouchMarker("a_start.dat");
    run.runAnalysis();
    if (ranks::Leads()) TouchMarker("a_end.dat");
    return 0;
}
