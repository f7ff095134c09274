// The free-field program on layered sections with a valley of soft soil in the middle:
//
// 1. Run time of varnek-freefield against that of the dynamic analysis on the same project
//    (side treatment 0, equivalent-linear), with the time of the line matrices apart.
// 2. The valley check: the surface motion over the valley in a section of width W and in one of
//    width 3W (the same valley in the middle), for side treatments 0, 1 and 2; the rms of the
//    difference over the rms of the wide section's motion, the largest and the mean over the
//    valley's surface nodes.
//
// The projects go to a scratch folder that is removed at the end. Figures go to standard error.
//
// Usage: free_field_bench [folder=/tmp/varnek-free-field-bench] [samples=2000] [layers=20]
//                         [valley=1] (0 times the programs only)
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "layered_project.hpp"

namespace {

struct Timed {
    double seconds = 0.0;
    std::string out;  // standard output of the program
};

// Runs a program with the project folder as the working directory; ends the benchmark when it
// fails.
Timed RunIn(const std::string& folder, const std::string& program) {
    const auto start = std::chrono::steady_clock::now();
    const std::string command = "cd '" + folder + "' && '" + program +
                                "' < /dev/null > console.txt 2> errors.txt";
    const int status = std::system(command.c_str());
    Timed timed;
    timed.seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::ifstream console(folder + "/console.txt");
    std::stringstream text;
    text << console.rdbuf();
    timed.out = text.str();
    if (status != 0) {
        std::fprintf(stderr, "%s failed in %s (status %d)\n", program.c_str(), folder.c_str(),
                     status);
        std::exit(1);
    }
    return timed;
}

// A section of cells 2 m wide and 1 m deep with a valley 16 m wide and 6 m deep.
LayeredProject Valley(int widthCells, int layers, int samples, int treatment) {
    LayeredProject section;
    section.columns = widthCells;
    section.layers = layers;
    section.cellWidth = 2.0;
    section.cellHeight = 1.0;
    section.valleyColumns = 8;
    section.valleyLayers = 6;
    section.waveSamples = samples;
    section.sideTreatment = treatment;
    section.sideDashpots = treatment == 1;
    return section;
}

std::vector<std::vector<double>> ValleySurface(const std::string& folder,
                                               const LayeredProject& section) {
    std::vector<std::vector<double>> motions;
    const int first = (section.columns - section.valleyColumns) / 2;
    for (int c = first; c <= first + section.valleyColumns; ++c)
        motions.push_back(NodeAcceleration(folder, section.Node(c, section.layers)));
    return motions;
}

}  // namespace

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    const std::string root = argc > 1 ? argv[1] : "/tmp/varnek-free-field-bench";
    const int samples = argc > 2 ? std::atoi(argv[2]) : 2000;
    const int layers = argc > 3 ? std::atoi(argv[3]) : 20;
    const bool valley = argc > 4 ? std::atoi(argv[4]) != 0 : true;
    fs::remove_all(root);

    // 1. Run times: W = 3 x 16 m, equivalent-linear, transmitting sides.
    {
        LayeredProject section = Valley(24, layers, samples, 0);
        section.equivalentLinear = true;
        const std::string folder = root + "/timing";
        WriteProject(folder, section.Files());
        const Timed freeField = RunIn(folder, VARNEK_FREEFIELD_EXECUTABLE);
        const Timed dynamic = RunIn(folder, VARNEK_EXECUTABLE);
        std::smatch lines;
        std::regex_search(freeField.out, lines, std::regex("(\\d+) line matrices \\(([0-9.]+) s\\)"));
        uintmax_t bytes = 0;
        for (const auto& entry : fs::directory_iterator(folder + "/output_ff"))
            bytes += entry.file_size();
        std::fprintf(stderr,
                     "timing: %d x %d cells, %d samples: varnek-freefield %.2f s (%s line "
                     "matrix files, %.1f MB, in %s s), varnek %.2f s\n",
                     section.columns, section.layers, samples, freeField.seconds,
                     lines.size() > 1 ? lines[1].str().c_str() : "?", bytes / 1e6,
                     lines.size() > 2 ? lines[2].str().c_str() : "?", dynamic.seconds);
    }

    // 2. The valley at widths W and 3W, linear.
    for (const int treatment : {0, 1, 2}) {
        if (!valley) break;
        std::vector<std::vector<double>> motions[2];
        double seconds = 0.0;
        for (const int scale : {1, 3}) {
            const LayeredProject section = Valley(24 * scale, layers, samples, treatment);
            const std::string folder =
                root + "/valley" + std::to_string(treatment) + "-" + std::to_string(scale);
            WriteProject(folder, section.Files());
            if (treatment != 2) seconds += RunIn(folder, VARNEK_FREEFIELD_EXECUTABLE).seconds;
            seconds += RunIn(folder, VARNEK_EXECUTABLE).seconds;
            motions[scale / 3] = ValleySurface(folder, section);
        }
        double worst = 0.0, mean = 0.0;
        for (size_t k = 0; k < motions[0].size(); ++k) {
            const double d = RelativeRmsDifference(motions[0][k], motions[1][k]);
            worst = std::max(worst, d);
            mean += d / static_cast<double>(motions[0].size());
        }
        std::fprintf(stderr,
                     "valley, side treatment %d: W against 3W over the valley: largest %.4f, "
                     "mean %.4f (runs %.1f s)\n",
                     treatment, worst, mean, seconds);
    }
    fs::remove_all(root);
    return 0;
}
