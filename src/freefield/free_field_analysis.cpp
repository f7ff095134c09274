#include "freefield/free_field_analysis.hpp"

#include <chrono>
#include <filesystem>
#include <system_error>

#include "base/console.hpp"
#include "base/run_stop.hpp"
#include "freefield/free_field_files.hpp"
#include "freefield/side_matrices.hpp"
#include "input/model_readers.hpp"
#include "solve/model_preparation.hpp"

namespace fs = std::filesystem;

namespace {

SideAnalysis SolveSide(const CAnalysisData& section, SideColumn column, bool equivalentLinear) {
    const SideBase base = FindColumnBase(section, column);
    console::OutF("\nFree-field column, %s edge (x = %g): %zu layers of %d-node sides, %zu nodes, "
                  "%s base\n",
                  EdgeName(column.edge), column.x, column.layers.size(), column.NodesPerLayer(),
                  column.nodes.size(), base.rigid ? "rigid" : "dashpot");
    console::Flush();
    SideAnalysis side;
    side.response = SolveColumn(section, column, equivalentLinear);
    side.column = std::move(column);
    console::OutLine("");
    return side;
}

// Makes an empty folder at path, removing what was there.
void MakeEmptyFolder(const fs::path& path) {
    std::error_code error;
    fs::remove_all(path, error);
    if (error || !fs::create_directory(path, error) || error)
        StopOnOutputFault("cannot make the folder " + path.string() +
                          (error ? ": " + error.message() : std::string()));
}

// Puts the finished folder in the place of the old one.
void ReplaceFolder(const fs::path& finished, const fs::path& target) {
    std::error_code error;
    const fs::path old = target.string() + ".old";
    fs::remove_all(old, error);
    if (fs::exists(target, error)) {
        fs::rename(target, old, error);
        if (error)
            StopOnOutputFault("cannot move the old " + target.string() + " aside: " +
                              error.message() + "; the new files stay in " + finished.string());
    }
    fs::rename(finished, target, error);
    if (error)
        StopOnOutputFault("cannot rename " + finished.string() + " to " + target.string() + ": " +
                          error.message());
    fs::remove_all(old, error);
}

// "dir/" for a project prefix "dir/" and a name; "name" in the working directory.
fs::path InProject(const std::string& folder, const std::string& name) {
    return fs::path(folder + name);
}

}  // namespace

void ReadSection(const std::string& folder, CAnalysisData& section) {
    section.clear(0);
    ReadFileList(section, folder + "input_VARNEK.inp", folder);
}

void PrepareSection(const std::string& folder, CAnalysisData& section) {
    PrepareModel(section, folder + "output0.inp");
}

FreeFieldResult AnalyseSides(const CAnalysisData& section, bool equivalentLinear) {
    SideColumn right = FindSideColumn(section, Edge::kRight);
    SideColumn left = FindSideColumn(section, Edge::kLeft);
    FindColumnBase(section, right);
    FindColumnBase(section, left);
    FreeFieldResult result;
    result.right = SolveSide(section, std::move(right), equivalentLinear);
    result.left = SolveSide(section, std::move(left), equivalentLinear);
    return result;
}

FolderSummary WriteFreeFieldFolder(const std::string& folder, const CAnalysisData& section,
                                   const FreeFieldResult& result, SideTreatment treatment) {
    const fs::path partial = InProject(folder, "output_ff.partial");
    MakeEmptyFolder(partial);
    const std::string out = partial.string() + "/";

    FolderSummary summary;
    summary.motionFiles += WriteColumnMotionFiles(out, "RFF_", result.right.column,
                                                  result.right.response);
    summary.motionFiles +=
        WriteColumnMotionFiles(out, "LFF_", result.left.column, result.left.response);
    WriteMatrixFile(out + "RIGHTEmatrix.dat", SideTractionMatrix(result.right));
    WriteMatrixFile(out + "LEFTEmatrix.dat", SideTractionMatrix(result.left));

    if (treatment == SideTreatment::kTransmitting) {
        const auto start = std::chrono::steady_clock::now();
        summary.lineMatrixFiles = WriteLineMatrixFiles(out, section, result.right, result.left);
        summary.lineMatrixSeconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    ReplaceFolder(partial, InProject(folder, "output_ff"));
    return summary;
}
