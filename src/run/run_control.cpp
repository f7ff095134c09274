#include "run/run_control.hpp"

#include <omp.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "element/constant_operators.hpp"
#include "input/line_reader.hpp"
#include "run/analysis_data.hpp"
#include "run/model_preparation.hpp"
#include "run/output_stages.hpp"
#include "run/platform.hpp"
#include "run/solution_stage.hpp"

namespace {
// A flag is the number 0 or 1; anything else fails the stream and leaves the flag unchanged.
std::istream& ExtractFlag(std::istream& in, bool& flag) {
    long value = 0;
    if (!(in >> value)) return in;
    if (value == 0 || value == 1)
        flag = value == 1;
    else
        in.setstate(std::ios::failbit);
    return in;
}

// All processors but one work; never fewer than one worker.
void SetWorkerThreads() {
    const int workers = ProcessorCount() - 1;
    omp_set_num_threads(workers > 0 ? workers : 1);
}

}  // namespace

void CRunControl::ReadFlags(const std::string& flagPath) {
    // Stream extraction as it stands: a flag is the number 0 or 1, and a failed extraction
    // leaves the local (and every field behind it) at its starting value.
    std::ifstream in(flagPath);
    uint32_t date = 0;
    uint32_t limit = outputLimit;
    bool linear = false;
    if (in >> date >> limit) ExtractFlag(in, linear);
    formatDate = date;
    outputLimit = limit;
    equivalentLinear = linear;
    if (formatDate > 20150122) {
        bool single = false;
        ExtractFlag(in, single);
        singleStepOutput = single;
    }
}

void CRunControl::runAnalysis() {
    SetWorkerThreads();
    CAnalysisData analysis;
    analysis.clear(0);
    analysis.formatDate = formatDate;

    analysis.ReadFileList(inputPath, folderPath);

    const std::string dynFolder = folderPath + "dyn/";
    const std::string outputFolder = folderPath + "output/";
    const std::string freeFieldFolder = folderPath + "output_ff/";
    CreateFolder(dynFolder);
    CreateFolder(outputFolder);

    const size_t dofCount = 2 * analysis.nodes.size();
    analysis.dofFixed.assign(dofCount, 0);
    analysis.dofSpare.assign(dofCount, 0);
    analysis.equationMap.assign(dofCount, 0);

    GivePrivateMaterials(analysis);
    analysis.ReadSelfWeightStress(folderPath + "output0.inp");
    DispBoundary(analysis);
    NumberEquations(analysis);

    RunSolution(analysis, *this, freeFieldFolder);
    std::cout << std::endl;

    RunOutputStages(analysis, *this, dynFolder, outputFolder);
}

std::string ReadProjectFolder(const std::string& configPath) {
    std::string folder;
    // A folder of that name is no configuration file: it opens as a stream here but not for
    // reading text, so it is passed over in silence like a missing file.
    std::error_code ec;
    if (std::filesystem::is_directory(configPath, ec)) return folder;
    std::ifstream in(configPath);
    if (in.good()) {
        std::getline(in, folder);
        StripCarriageReturn(folder);
        std::cout << folder << std::endl;
    }
    return folder;
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
    TouchMarker("a_start.dat");
    run.runAnalysis();
    TouchMarker("a_end.dat");
    return 0;
}
