#include "selfweight/options.hpp"

namespace {

std::optional<SelfWeightMethod> MethodNamed(const std::string& name) {
    if (name == "gravity") return SelfWeightMethod::kGravity;
    if (name == "k0") return SelfWeightMethod::kK0;
    return std::nullopt;
}

}  // namespace

std::optional<SelfWeightOptions> ParseOptions(const std::vector<std::string>& arguments,
                                              std::string& fault) {
    SelfWeightOptions options;
    for (size_t k = 0; k < arguments.size(); ++k) {
        const std::string& argument = arguments[k];
        if (argument == "--verbose") {
            options.verbose = true;
        } else if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--method" || argument.starts_with("--method=")) {
            std::string name;
            if (argument == "--method") {
                if (k + 1 == arguments.size()) {
                    fault = "--method needs a name: gravity or k0";
                    return std::nullopt;
                }
                name = arguments[++k];
            } else {
                name = argument.substr(std::string("--method=").size());
            }
            const std::optional<SelfWeightMethod> method = MethodNamed(name);
            if (!method) {
                fault = "unknown method \"" + name + "\": gravity or k0";
                return std::nullopt;
            }
            options.method = *method;
        } else {
            fault = "unknown argument \"" + argument + "\"";
            return std::nullopt;
        }
    }
    return options;
}

const char* UsageText() {
    return R"(Usage: varnek-selfweight [--method gravity|k0] [--verbose]

The self-weight analysis of a VARNEK project: the initial stresses of every integration point,
written to "output0.inp" in the project folder, where the dynamic analysis (varnek) reads them.
Run it in the working directory of the dynamic analysis: it finds the project through
"config_VARNEK.txt" and reads the nodes, elements, materials and boundary conditions named in
"input_VARNEK.inp" (the constants and the wave are read too, for the head of the file).

Options:
  --method gravity  The default. Linear elastic plane-strain analysis of the whole section
                    under its own weight: each element weighs its own density (the one its
                    density selector picks, which also gives the dynamic analysis its mass)
                    times g = 9.80665 m/s2; stiffness from G0 and Poisson's ratio of its
                    material. Supports: the fixed directions of the boundary file, and the
                    direction of every dashpot the dynamic analysis puts on a node. One sparse
                    Cholesky solve; stresses at the integration points from the displacements.
  --method k0       Geostatic stresses of level ground: vertical stress from the weight of the
                    elements above each integration point, horizontal stress K0 = nu / (1 - nu)
                    times it (nu of the point's material), no shear. No displacements, no
                    strains. Needs no supports.
  --verbose         Also print the weight of the section and, for the gravity method, the sum
                    of the support reactions against it (MN per metre of section).
  --help, -h        This text.

Units: densities in MPa s2/m2 (t/m3 / 1000), moduli in MPa; the stresses of the file are in
tf/m2, compression negative. The file is written under a temporary name and renamed when it is
complete. Exit status 0 when written; 2 for a bad argument or a model that cannot be analysed
(no supports, a folded element, a material without weight or stiffness, a singular system),
with one message on standard error and no file written.
)";
}
