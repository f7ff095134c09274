#include "run/run_control.hpp"

#include <omp.h>

#include <string>
#include <vector>

#include "base/console.hpp"
#include "base/output_file.hpp"
#include "base/platform.hpp"
#include "base/run_stop.hpp"
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

// A folder of results, made here or found: a file of that name in its place, or a project
// folder that cannot be written, ends the run before any work is spent.
void CreateResultFolder(const std::string& path) {
    if (const int error = CreateFolder(path); error != 0) StopOnFolderNotCreated(path, error);
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

    ReadFileList(analysis, inputPath, folderPath);

    // Checks the model before anything is written: a faulty one stops here.
    PrepareModel(analysis, folderPath + "output0.inp");

    const std::string dynFolder = folderPath + "dyn/";
    const std::string outputFolder = folderPath + "output/";
    const std::string freeFieldFolder = folderPath + "output_ff/";
    if (ranks::Leads()) {
        CreateResultFolder(dynFolder);
        CreateResultFolder(outputFolder);
    }

    RunSolution(analysis, equivalentLinear, freeFieldFolder);
    // The output stages are rank 0's alone, on all the processors of its machine.
    if (!ranks::Leads()) return;
    SetWorkerThreads();
    console::OutLine("");

    RunOutputStages(analysis, *this, dynFolder, outputFolder);
}

namespace {
// An empty marker for whatever watches the working directory; one that cannot be written ends
// the run, since a watcher would wait for it in vain.
void TouchMarker(const char* name) {
    OutputFile(name, "wb").Close();
}
}  // namespace

int RunProgram() {
    BuildConstantOperators();
    const std::string folder = ReadProjectFolder("config_VARNEK.txt");
    CRunControl run(folder + "input_VARNEK.inp", folder);
    run.ReadFlags(folder + "Flag_VARNEK.inp");
    if (ranks::Leads()) {
        // The end marker of an earlier run would tell a watcher that this one is complete.
        RemoveFile("a_end.dat");
        TouchMarker("a_start.dat");
    }
    run.runAnalysis();
    if (ranks::Leads()) TouchMarker("a_end.dat");
    return 0;
}
