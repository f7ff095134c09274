// The side treatments in a whole solution: energy-transmitting sides whose line matrices are
// exactly i w C of side dashpots must answer as the viscous sides with those dashpots, and each
// treatment touches only its own files.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "element/constant_operators.hpp"
#include "run/model_preparation.hpp"
#include "run/run_control.hpp"
#include "run/solution_stage.hpp"
#include "support/project_fixture.hpp"

namespace {
// A soil section two cells wide and three layers deep of 4-node elements, nodes row by row from
// the base (fixed) up; dashpots on both side columns, one "$V" row per node and direction.
class SideColumnProject {
  public:
    static constexpr int kColumns = 3, kRows = 4;
    static constexpr double kTimeStep = 0.01;
    static constexpr int kSamples = 64;        // padded length P: T = 0.64 s
    static constexpr int kFrequencyCount = 8;  // lines i / T up to 12 Hz

    struct Dashpot {
        int code, node, direction;
        double re, im;
        double factors[3];
        int edges[3];
    };

    explicit SideColumnProject(int sideBoundaryType) : mode_(sideBoundaryType) {
        for (int r = 1; r < kRows; ++r)
            for (int side = 0; side < 2; ++side)
                for (int d = 0; d < 2; ++d) {
                    const int c = side == 0 ? kColumns - 1 : 0;
                    const bool top = r == kRows - 1;
                    Dashpot dashpot{d == 1 ? 202 : 200 + side,
                                    Node(c, r),
                                    d,
                                    d == 0 ? 0.3 : 0.6,
                                    d == 0 ? 0.02 : 0.0,
                                    {5.0, top ? 10.0 : 20.0, 5.0},
                                    {Node(c, r - 1), Node(c, r), top ? -1 : Node(c, r + 1)}};
                    dashpots_.push_back(dashpot);
                }
    }

    static int Node(int column, int row) { return row * kColumns + column; }
    static bool OnRightSide(int node) { return node % kColumns == kColumns - 1; }

    // The model, the run files and the side files of the free-field analysis but the line
    // matrices.
    void Write(const ProjectFolder& folder) const {
        folder.Write("config_VARNEK.txt", Prefix(folder) + "\n");
        folder.Write("Flag_VARNEK.inp", "20200101 500 0 0\n");
        folder.Write(
            "input_VARNEK.inp",
            "constants.dat\nwave.csv\nnodes.dat\nelements.dat\nmaterials.dat\nboundary.dat\n");
        folder.Write("constants.dat",
                     "12\n0\n0.01\n0.05\n0.65\n1\n" + std::to_string(mode_) + "\n");
        std::string wave = "wave,0,1\n";
        for (int k = 0; k < kSamples; ++k)
            wave += Format("%.2f,%.6f\n", k * kTimeStep,
                           100.0 * std::sin(0.7 * k) * std::exp(-0.05 * k));
        folder.Write("wave.csv", wave);
        std::string nodes, elements, boundary, stresses = "---- stress ----\n";
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kColumns; ++c) nodes += Format("%d %d\n", c, r);
        for (int r = 0; r + 1 < kRows; ++r)
            for (int c = 0; c + 1 < kColumns; ++c) {
                elements += Format("0 4 1 %d %d %d %d\n", Node(c, r), Node(c + 1, r),
                                   Node(c + 1, r + 1), Node(c, r + 1));
                for (int g = 0; g < 4; ++g) stresses += "1 0 0 0 0 0 0\n";
            }
        for (int c = 0; c < kColumns; ++c) boundary += Format("%d 2 0 0\n", Node(c, 0));
        for (const Dashpot& d : dashpots_)
            boundary += Format("$VISCO %d %d %d %.17g %.17g 0 %g %g %g %d %d %d\n", d.code, d.node,
                               d.direction, d.re, d.im, d.factors[0], d.factors[1], d.factors[2],
                               d.edges[0], d.edges[1], d.edges[2]);
        folder.Write("nodes.dat", nodes);
        folder.Write("elements.dat", elements);
        folder.Write("materials.dat", "1\n5\n0.0018\n0.0018\n0\n50\n0.4\n0.03\n");
        folder.Write("boundary.dat", boundary);
        folder.Write("output0.inp", stresses);
        // A static side coupling in the load, and the free-field motion of the side columns.
        folder.Write("output_ff/RIGHTEmatrix.dat",
                     Format("%d %d 0.125 -0.5\n", 2 * Node(2, 3), 2 * Node(2, 2)));
        folder.Write("output_ff/LEFTEmatrix.dat",
                     Format("%d %d 0.25 0\n\n", 2 * Node(0, 2), 2 * Node(0, 2)));
        for (int r = 1; r < kRows; ++r)
            for (const char* side : {"RFF_", "LFF_"}) {
                std::string motion =
                    std::to_string(Node(side[0] == 'R' ? kColumns - 1 : 0, r)) + "\n";
                for (int i = 0; i < kFrequencyCount; ++i)
                    motion += Format("%.17g %.17g\n", 1.0 + 0.1 * r - 0.05 * i,
                                     0.02 * i * (side[0] == 'R'));
                folder.Write("output_ff/" + std::string(side) + std::to_string(r) + ".dat", motion);
            }
    }

    // "REMat<i>.dat" and "LEMat<i>.dat": i w times the dashpot terms of the right and the left
    // column, at the degrees of freedom they couple.
    void WriteLineMatrices(const ProjectFolder& folder) const {
        const double duration = kSamples * kTimeStep;
        for (int i = 1; i < kFrequencyCount; ++i) {
            const double w = (6.283185307179586 / duration) * i;
            std::string right, left;
            for (const Dashpot& d : dashpots_)
                for (int e = 0; e < 3 && d.edges[e] != -1; ++e) {
                    const Complex term((d.re * d.factors[e]) / 30.0, (d.im * d.factors[e]) / 30.0);
                    const Complex value = Complex(0.0, w) * term;
                    (OnRightSide(d.node) ? right : left) +=
                        Format("%d %d %.17g %.17g\n", 2 * d.node + d.direction,
                               2 * d.edges[e] + d.direction, value.real(), value.imag());
                }
            folder.Write("output_ff/REMat" + std::to_string(i) + ".dat", right);
            folder.Write("output_ff/LEMat" + std::to_string(i) + ".dat", left);
        }
    }

    // Reads the model and runs the solution in this process; gives dispX and dispY of every node
    // at lines 1 .. kFrequencyCount - 1.
    std::vector<Complex> SolveSpectra(const ProjectFolder& folder) const {
        const std::string prefix = Prefix(folder);
        BuildConstantOperators();
        CAnalysisData analysis;
        analysis.clear(0);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        analysis.ReadFileList(prefix + "input_VARNEK.inp", prefix);
        const size_t dofCount = 2 * analysis.nodes.size();
        analysis.dofFixed.assign(dofCount, 0);
        analysis.dofSpare.assign(dofCount, 0);
        analysis.equationMap.assign(dofCount, 0);
        GivePrivateMaterials(analysis);
        analysis.ReadSelfWeightStress(prefix + "output0.inp");
        DispBoundary(analysis);
        NumberEquations(analysis);
        const CRunControl run(prefix + "input_VARNEK.inp", prefix);
        RunSolution(analysis, run, prefix + "output_ff/");
        testing::internal::GetCapturedStderr();
        testing::internal::GetCapturedStdout();
        EXPECT_EQ(analysis.frequencyCount, kFrequencyCount);
        std::vector<Complex> spectra;
        for (const CNode& node : analysis.nodes)
            for (int i = 1; i < kFrequencyCount; ++i) {
                spectra.push_back(node.dispX[i]);
                spectra.push_back(node.dispY[i]);
            }
        return spectra;
    }

    static std::string Prefix(const ProjectFolder& folder) { return folder.Root().string() + "/"; }

  private:
    template <typename... Args>
    static std::string Format(const char* format, Args... args) {
        char text[256];
        std::snprintf(text, sizeof text, format, args...);
        return text;
    }

    int mode_;
    std::vector<Dashpot> dashpots_;
};

double LargestMagnitude(const std::vector<Complex>& values) {
    double largest = 0.0;
    for (const Complex& v : values) largest = std::max(largest, std::abs(v));
    return largest;
}

double LargestDifference(const std::vector<Complex>& a, const std::vector<Complex>& b) {
    double largest = 0.0;
    for (size_t k = 0; k < a.size() && k < b.size(); ++k)
        largest = std::max(largest, std::abs(a[k] - b[k]));
    return largest;
}
}  // namespace

TEST(SideBoundaryRun, LineMatricesOfSideDashpotsAnswerAsTheViscousSides) {
    ProjectFolder transmitting, viscous, none;
    const SideColumnProject mode0(0), mode1(1), mode2(2);
    mode0.Write(transmitting);
    mode0.WriteLineMatrices(transmitting);
    mode1.Write(viscous);
    mode2.Write(none);
    const std::vector<Complex> byLineMatrices = mode0.SolveSpectra(transmitting);
    const std::vector<Complex> byDashpots = mode1.SolveSpectra(viscous);
    const std::vector<Complex> withoutSides = mode2.SolveSpectra(none);
    ASSERT_EQ(byLineMatrices.size(), byDashpots.size());
    const double scale = LargestMagnitude(byDashpots);
    ASSERT_GT(scale, 0.0);
    EXPECT_LE(LargestDifference(byLineMatrices, byDashpots), 1e-10 * scale);
    // The sides matter: without them the section answers otherwise.
    EXPECT_GT(LargestDifference(withoutSides, byDashpots), 1e-3 * scale);
}

TEST(SideBoundaryRun, EachTreatmentOpensOnlyItsOwnFiles) {
    // No side treatment: a free-field file that would stop the run and no constant matrices.
    ProjectFolder none;
    SideColumnProject(2).Write(none);
    none.Write("output_ff/RFF_0.dat", "999\n1 1\n");
    std::filesystem::remove(none.Path("output_ff/RIGHTEmatrix.dat"));
    ProgramRun run = none.Run();
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.find("Reading error"), std::string::npos) << run.out;
    EXPECT_TRUE(none.Exists("a_end.dat"));

    // Viscous sides: the constant matrices and the free field, no line matrix.
    ProjectFolder viscous;
    SideColumnProject(1).Write(viscous);
    run = viscous.Run();
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.find("Reading error"), std::string::npos) << run.out;
    EXPECT_TRUE(viscous.Exists("a_end.dat"));
}

TEST(SideBoundaryRun, MissingLineMatrixEndsTheRunWithItsPath) {
    ProjectFolder transmitting;
    const SideColumnProject project(0);
    project.Write(transmitting);
    project.WriteLineMatrices(transmitting);
    std::filesystem::remove(transmitting.Path("output_ff/REMat7.dat"));
    const ProgramRun run = transmitting.Run();
    EXPECT_EQ(run.status, 0);
    const std::string expected =
        SideColumnProject::Prefix(transmitting) + "output_ff/REMat7.dat\nEmatrix7:Reading error\n";
    EXPECT_NE(run.out.find(expected), std::string::npos) << run.out;
    EXPECT_FALSE(transmitting.Exists("a_end.dat"));
}
