// The side treatments in a whole run: energy-transmitting sides whose line matrices are i w C of
// side dashpots answer as viscous sides with those dashpots, and each treatment opens only its
// own files.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <numbers>
#include <string>
#include <vector>

#include "element/constant_operators.hpp"
#include "run/model_preparation.hpp"
#include "run/soil_column.hpp"
#include "support/project_fixture.hpp"

namespace {
// A section two cells wide and three deep of 4-node elements, nodes row by row from the fixed
// base up; 64 steps of 0.01 s and lines up to 12 Hz.
constexpr int kColumns = 3, kRows = 4, kLines = 8;

template <typename... Args>
std::string Format(const char* format, Args... args) {
    char text[256];
    std::snprintf(text, sizeof text, format, args...);
    return text;
}

constexpr auto Node = [](int column, int row) { return row * kColumns + column; };

// The run's files with a "$V" dashpot per side node and direction (right x 200, left x 201,
// y 202), side matrices and free-field columns; with transmitting sides, line matrices that are
// i w times the dashpot terms of the right and the left column.
void WriteProject(const ProjectFolder& folder, int sideTreatment) {
    std::map<std::string, std::string> files = {
        {"config_VARNEK.txt", folder.Root().string() + "/\n"},
        {"Flag_VARNEK.inp", "20200101 500 0 0\n"},
        {"input_VARNEK.inp",
         "constants.dat\nwave.csv\nnodes.dat\nelements.dat\nmaterials.dat\nboundary.dat\n"},
        {"constants.dat", Format("12\n0\n0.01\n0.05\n0.65\n1\n%d\n", sideTreatment)},
        {"materials.dat", "1\n5\n0.0018\n0.0018\n0\n50\n0.4\n0.03\n"},
        {"wave.csv", "wave,0,1\n"},
        {"output0.inp", "---- stress ----\n"},
        {"output_ff/RIGHTEmatrix.dat",
         Format("%d %d 0.125 -0.5\n", 2 * Node(2, 3), 2 * Node(2, 2))},
        {"output_ff/LEFTEmatrix.dat", Format("%d %d 0.25 0\n\n", 2 * Node(0, 2), 2 * Node(0, 2))}};
    for (int k = 0; k < 64; ++k)
        files["wave.csv"] +=
            Format("%.2f,%.6f\n", k * 0.01, 100.0 * std::sin(0.7 * k) * std::exp(-0.05 * k));
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kColumns; ++c) {
            files["nodes.dat"] += Format("%d %d\n", c, r);
            if (r == 0) files["boundary.dat"] += Format("%d 2 0 0\n", Node(c, 0));
            if (r + 1 == kRows || c + 1 == kColumns) continue;
            files["elements.dat"] += Format("0 4 1 %d %d %d %d\n", Node(c, r), Node(c + 1, r),
                                            Node(c + 1, r + 1), Node(c, r + 1));
            for (int g = 0; g < 4; ++g) files["output0.inp"] += "1 0 0 0 0 0 0\n";
        }
    for (int r = 1; r < kRows; ++r)
        for (int side = 0; side < 2; ++side) {
            const int c = side == 0 ? kColumns - 1 : 0, node = Node(c, r);
            const int edges[3] = {Node(c, r - 1), node, r + 1 < kRows ? Node(c, r + 1) : -1};
            for (int d = 0; d < 2; ++d) {
                const Complex coefficient(d == 0 ? 0.3 : 0.6, d == 0 ? 0.02 : 0.0);
                files["boundary.dat"] += Format(
                    "$VISCO %d %d %d %.17g %.17g 0 5 10 5 %d %d %d\n", d == 1 ? 202 : 200 + side,
                    node, d, coefficient.real(), coefficient.imag(), edges[0], edges[1], edges[2]);
                for (int e = 0; e < 3 && edges[e] != -1 && sideTreatment == 0; ++e)
                    for (int i = 1; i < kLines; ++i) {
                        const Complex value = Complex(0.0, 2.0 * std::numbers::pi / 0.64 * i) *
                                              (coefficient * (e == 1 ? 10.0 : 5.0) / 30.0);
                        files[Format("output_ff/%cEMat%d.dat", "RL"[side], i)] +=
                            Format("%d %d %.17g %.17g\n", 2 * node + d, 2 * edges[e] + d,
                                   value.real(), value.imag());
                    }
            }
            std::string& motion = files[Format("output_ff/%cFF_%d.dat", "RL"[side], r)];
            motion = std::to_string(node) + "\n";
            for (int i = 0; i < kLines; ++i)
                motion += Format("%.17g %.17g\n", 1.0 + 0.1 * r - 0.05 * i, 0.02 * i * (side == 0));
        }
    for (const auto& [name, text] : files) folder.Write(name, text);
}

// The model read and solved in this process as the program does: dispX and dispY of every node
// at lines 1 .. kLines - 1.
std::vector<Complex> SolveSpectra(int sideTreatment) {
    ProjectFolder folder;
    WriteProject(folder, sideTreatment);
    const std::string prefix = folder.Root().string() + "/";
    BuildConstantOperators();
    CAnalysisData analysis;
    analysis.clear(0);
    testing::internal::CaptureStdout();
    analysis.ReadFileList(prefix + "input_VARNEK.inp", prefix);
    for (auto* list : {&analysis.dofFixed, &analysis.dofSpare, &analysis.equationMap})
        list->assign(2 * analysis.nodes.size(), 0);
    GivePrivateMaterials(analysis);
    analysis.ReadSelfWeightStress(prefix + "output0.inp");
    DispBoundary(analysis);
    NumberEquations(analysis);
    testing::internal::GetCapturedStdout();
    SolveCapturingConsole(analysis, false, prefix + "output_ff/");
    EXPECT_EQ(analysis.frequencyCount, kLines);
    std::vector<Complex> spectra;
    for (const CNode& node : analysis.nodes)
        for (int i = 1; i < kLines; ++i)
            spectra.insert(spectra.end(), {node.dispX[i], node.dispY[i]});
    return spectra;
}
}  // namespace

TEST(SideBoundaryRun, LineMatricesOfSideDashpotsAnswerAsTheViscousSides) {
    const std::vector<Complex> byLineMatrices = SolveSpectra(0), byDashpots = SolveSpectra(1),
                               withoutSides = SolveSpectra(2);
    ASSERT_EQ(byLineMatrices.size(), byDashpots.size());
    double scale = 0.0, difference = 0.0, sidesMatter = 0.0;
    for (size_t k = 0; k < byDashpots.size(); ++k) {
        scale = std::max(scale, std::abs(byDashpots[k]));
        difference = std::max(difference, std::abs(byLineMatrices[k] - byDashpots[k]));
        sidesMatter = std::max(sidesMatter, std::abs(withoutSides[k] - byDashpots[k]));
    }
    ASSERT_GT(scale, 0.0);
    EXPECT_LE(difference, 1e-10 * scale);
    EXPECT_GT(sidesMatter, 1e-3 * scale);
}

// A run without sides opens no file of the free-field analysis, one with viscous sides no line
// matrix; a missing or bad file of the treatment in use ends the run naming it.
TEST(SideBoundaryRun, EachTreatmentOpensOnlyItsOwnFiles) {
    const struct {
        int sideTreatment;
        std::vector<std::pair<std::string, std::string>> files;  // empty text: taken away
        int status;
        std::string message;
    } cases[] = {
        {2, {{"RIGHTEmatrix.dat", ""}, {"RFF_0.dat", "999\n1 1\n"}}, 0, ""},
        {1, {}, 0, ""},
        {0, {{"REMat7.dat", ""}}, 0, "REMat7.dat\nEmatrix7:Reading error\n"},
        {0, {{"REMat7.dat", ""}, {"LEMat5.dat", ""}}, 0, "LEMat5.dat\nEmatrix5:Reading error\n"},
        {1, {{"RIGHTEmatrix.dat", ""}}, 0, "RIGHTEmatrix.dat\nEmatrix:Reading error\n"},
        {0,
         {{"LEFTEmatrix.dat", "0 0 1 1\n1 24 1 1\n"}},
         2,
         "LEFTEmatrix.dat:2: degree of freedom 24 is outside 0..23"},
        {1, {{"LFF_1.dat", "12\n1 1\n"}}, 2, "LFF_1.dat:1: node 12 is outside 0..11"},
    };
    for (const auto& c : cases) {
        ProjectFolder folder;
        WriteProject(folder, c.sideTreatment);
        for (const auto& [name, text] : c.files)
            if (text.empty())
                std::filesystem::remove(folder.Path("output_ff/" + name));
            else
                folder.Write("output_ff/" + name, text);
        const ProgramRun run = folder.Run();
        SCOPED_TRACE(c.message);
        EXPECT_EQ(run.status, c.status) << run.err;
        EXPECT_EQ(folder.Exists("a_end.dat"), c.message.empty());
        if (c.message.empty())
            EXPECT_EQ(run.out.find("Reading error"), std::string::npos) << run.out;
        else
            EXPECT_NE((run.out + run.err).find(folder.Path("output_ff/" + c.message)),
                      std::string::npos)
                << run.out << run.err;
    }
}
