// varnek-selfweight: the self-weight analysis of a VARNEK project, which writes the initial
// stresses ("output0.inp") that the dynamic analysis starts from. See UsageText for the
// command line.
#include <string>
#include <vector>

#include "base/console.hpp"
#include "base/run_stop.hpp"
#include "element/constant_operators.hpp"
#include "input/model_readers.hpp"
#include "input/run_files.hpp"
#include "selfweight/gravity_method.hpp"
#include "selfweight/initial_stress_file.hpp"
#include "selfweight/k0_method.hpp"
#include "selfweight/options.hpp"
#include "selfweight/static_model.hpp"

namespace {

void ShowBalance(const StaticBalance& balance, SelfWeightMethod method) {
    console::OutF("weight of the section            %.9e MN/m\n", balance.weight);
    if (method != SelfWeightMethod::kGravity) return;
    console::OutF("sum of support reactions         x %.9e  y %.9e MN/m\n", balance.reactionX,
                  balance.reactionY);
    console::OutF("reaction y / weight - 1          %.3e\n",
                  balance.reactionY / balance.weight - 1.0);
    console::OutF("largest out-of-balance force     %.3e MN/m (free degrees of freedom)\n",
                  balance.largestResidual);
}

// The weight of the section from its load, for the k0 method, which has no reactions.
double SectionWeight(const CAnalysisData& analysis) {
    double weight = 0.0;
    const std::vector<double> load = GravityLoad(analysis);
    for (size_t dof = 1; dof < load.size(); dof += 2) weight -= load[dof];
    return weight;
}

}  // namespace

int main(int argc, char** argv) {
    std::string fault;
    const auto options = ParseOptions(std::vector<std::string>(argv + 1, argv + argc), fault);
    if (!options) {
        console::ErrLine("varnek-selfweight: " + fault + " (see --help)");
        StopRun(ExitStatus::kBadInput);
    }
    if (options->help) {
        console::Out(UsageText());
        return 0;
    }

    BuildConstantOperators();
    const std::string folder = ReadProjectFolder("config_VARNEK.txt");
    CAnalysisData analysis;
    analysis.clear(0);
    ReadFileList(analysis, folder + "input_VARNEK.inp", folder);
    CheckStaticModel(analysis);

    const bool gravity = options->method == SelfWeightMethod::kGravity;
    SelfWeightState state = gravity ? GravityAnalysis(analysis) : GeostaticAnalysis(analysis);
    if (!gravity) state.balance.weight = SectionWeight(analysis);
    if (options->verbose) ShowBalance(state.balance, options->method);

    const std::string path = folder + "output0.inp";
    WriteInitialStressFile(analysis, state, path);
    size_t points = 0;
    for (const auto& element : state.points) points += element.size();
    console::OutLine(std::string(gravity ? "gravity" : "k0") + " method: " +
                     std::to_string(points) + " integration points written to " + path);
    return 0;
}
