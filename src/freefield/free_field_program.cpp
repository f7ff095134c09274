#include "freefield/free_field_program.hpp"

#include <omp.h>

#include "base/console.hpp"
#include "base/platform.hpp"
#include "base/run_stop.hpp"
#include "element/constant_operators.hpp"
#include "freefield/free_field_analysis.hpp"
#include "input/run_files.hpp"

bool ParseFreeFieldOptions(const std::vector<std::string>& arguments, FreeFieldOptions& options,
                           std::string& fault) {
    for (size_t k = 0; k < arguments.size(); ++k) {
        const std::string& argument = arguments[k];
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--treatment") {
            if (k + 1 == arguments.size() || (arguments[k + 1] != "0" && arguments[k + 1] != "1")) {
                fault = "--treatment takes 0 (transmitting boundary) or 1 (dashpots)";
                return false;
            }
            options.treatment = arguments[++k][0] - '0';
        } else {
            fault = "unknown argument \"" + argument + "\"";
            return false;
        }
    }
    return true;
}

std::string FreeFieldUsage() {
    return "usage: varnek-freefield [--treatment 0|1] [--help]\n"
           "\n"
           "Free-field analysis of the project that config_VARNEK.txt of the working directory\n"
           "names (its first line is the project folder prefix; none means the working\n"
           "directory). It solves the soil columns at the left and right edges of the section\n"
           "with the section's wave, lines, moduli and equivalent-linear iteration, and writes\n"
           "the folder output_ff/ of the project for the dynamic analysis:\n"
           "  RFF_<k>.dat, LFF_<k>.dat   free-field motion of each edge node, per unit base\n"
           "                             acceleration, at every frequency line\n"
           "  RIGHTEmatrix.dat,          the shear traction of the free field on each edge\n"
           "  LEFTEmatrix.dat\n"
           "  REMat<i>.dat, LEMat<i>.dat energy-transmitting boundary of each edge at line i\n"
           "                             (side treatment 0 only)\n"
           "\n"
           "By default it writes what the project's side treatment (the seventh analysis\n"
           "constant) needs: 0 all three kinds, 1 the motions and the traction matrices, any\n"
           "other none.\n"
           "  --treatment 0|1   write the files of that treatment instead\n"
           "  --help            show this text\n";
}

int RunFreeFieldProgram(const std::vector<std::string>& arguments) {
    FreeFieldOptions options;
    std::string fault;
    if (!ParseFreeFieldOptions(arguments, options, fault)) {
        console::ErrLine("varnek-freefield: " + fault);
        console::ErrLine(FreeFieldUsage());
        StopRun(ExitStatus::kBadInput);
    }
    if (options.help) {
        console::Out(FreeFieldUsage());
        console::Flush();
        return 0;
    }

    BuildConstantOperators();
    const int workers = ProcessorCount() - 1;
    omp_set_num_threads(workers > 0 ? workers : 1);
    const std::string folder = ReadProjectFolder("config_VARNEK.txt");
    const RunFlags flags = ReadRunFlags(folder + "Flag_VARNEK.inp", RunFlags{});

    CAnalysisData section;
    ReadSection(folder, section);
    const int code = options.treatment >= 0 ? options.treatment : section.sideBoundaryType;
    const SideTreatment treatment = SideTreatmentOf(code);
    if (treatment == SideTreatment::kNone) {
        console::OutF("Side treatment %d leaves the edges as they are and reads no free-field "
                      "files: nothing written.\n",
                      code);
        console::Flush();
        return 0;
    }
    PrepareSection(folder, section);
    const FreeFieldResult result = AnalyseSides(section, flags.equivalentLinear);
    const FolderSummary summary = WriteFreeFieldFolder(folder, section, result, treatment);

    console::OutF("\n%soutput_ff/ for side treatment %d: %d free-field motions, RIGHTEmatrix.dat, "
                  "LEFTEmatrix.dat",
                  folder.c_str(), code, summary.motionFiles);
    if (treatment == SideTreatment::kTransmitting)
        console::OutF(", %d line matrices (%.2f s)", summary.lineMatrixFiles,
                      summary.lineMatrixSeconds);
    console::OutLine("");
    return 0;
}
