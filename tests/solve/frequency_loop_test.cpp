// The side treatments in whole runs: the frequency loop against the plain way on any thread
// count, energy-transmitting sides whose line matrices are i w C of side dashpots against viscous
// sides with those dashpots, and the files each treatment opens.
#include "solve/frequency_loop.hpp"

#include <gtest/gtest.h>
#include <omp.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "element/constant_operators.hpp"
#include "fem/element_matrices.hpp"
#include "fem/viscous_boundary.hpp"
#include "input/free_field.hpp"
#include "input/model_readers.hpp"
#include "input/transmitting_boundary.hpp"
#include "solve/line_system_chain.hpp"
#include "solve/line_system_parts.hpp"
#include "solve/line_vectors.hpp"
#include "solve/model_preparation.hpp"
#include "support/project_fixture.hpp"
#include "support/soil_column.hpp"
#include "support/test_projects.hpp"

namespace {
constexpr int kLines = SideProject::kLines;

void WriteProject(const ProjectFolder& folder, int sideTreatment) {
    SideProject{sideTreatment}.Write(folder);
}

// The model of a project read as the program reads it.
struct SideModel {
    ProjectFolder project;
    CAnalysisData analysis;

    explicit SideModel(int sideTreatment) {
        WriteProject(project, sideTreatment);
        BuildConstantOperators();
        analysis.clear(0);
        testing::internal::CaptureStdout();
        ReadFileList(analysis, project.Path("input_VARNEK.inp"), project.Path(""));
        for (auto* list : {&analysis.dofFixed, &analysis.equationMap})
            list->assign(2 * analysis.nodes.size(), 0);
        GivePrivateMaterials(analysis);
        ReadSelfWeightStress(analysis, project.Path("output0.inp"));
        DispBoundary(analysis);
        NumberEquations(analysis);
        testing::internal::GetCapturedStdout();
    }

    std::string Folder() const { return project.Path("output_ff/"); }

    std::vector<Complex> Solve() {
        SolveCapturingConsole(analysis, false, Folder());
        return Spectra();
    }

    // Every line solved the plain way from the same files, one new matrix per operation and
    // the side matrix of each line read anew.
    std::vector<Complex> SolvePlainWay() {
        const size_t n = static_cast<size_t>(analysis.freeDofCount);
        SparseComplexMatrix K(n);
        AssembleStiffnessMatrix(analysis.elements.size(), analysis.equationMap, analysis.nodes,
                                analysis.elements, K);
        LineSystemParts parts(analysis, Folder(), 0);
        LineSystemTerms terms = parts.Terms();
        const std::string folder = Folder();
        terms.lineMatrix = [&](int i) {
            SparseComplexMatrix E(n);
            ReadFrequencyEMatrix(E, i, folder, analysis);
            return E;
        };
        for (int i = 1; i < analysis.frequencyCount; ++i) SolveLineByChain(terms, K, i, analysis);
        return Spectra();
    }

    // dispX and dispY of every node at lines 1 .. kLines - 1.
    std::vector<Complex> Spectra() const {
        EXPECT_EQ(analysis.frequencyCount, kLines);
        std::vector<Complex> all;
        for (const CNode& node : analysis.nodes)
            for (const ComplexVector* s : {&node.dispX, &node.dispY})
                all.insert(all.end(), s->data.begin() + 1, s->data.begin() + kLines);
        return all;
    }
};

double Largest(const std::vector<Complex>& a, const std::vector<Complex>& b = {}) {
    double largest = 0.0;
    for (size_t k = 0; k < a.size(); ++k)
        largest = std::max(largest, std::abs(a[k] - (b.empty() ? Complex() : b[k])));
    return largest;
}

// Every side treatment on one thread and on two, against the plain way. Without side matrices
// of their own the two ways share a pattern and agree bit for bit; the union pattern of
// transmitting sides orders the elimination differently. Line matrices of i w C answer as the
// viscous sides with those dashpots, and the sides matter.
TEST(FrequencyLoop, EverySideTreatmentSolvesAsThePlainWayOnAnyThreadCount) {
    const int saved = omp_get_max_threads();
    std::vector<Complex> spectra[3];
    for (const auto& [mode, tolerance] : {std::pair{0, 1e-12}, {1, 0.0}, {2, 0.0}}) {
        SideModel one(mode), two(mode), plain(mode);
        omp_set_num_threads(1);
        const std::vector<Complex> a = one.Solve();
        omp_set_num_threads(2);
        spectra[mode] = two.Solve();
        const std::vector<Complex> expected = plain.SolvePlainWay();
        ASSERT_EQ(a.size(), expected.size());
        EXPECT_EQ(std::memcmp(a.data(), spectra[mode].data(), a.size() * sizeof(Complex)), 0);
        ASSERT_GT(Largest(expected), 0.0);
        EXPECT_LE(Largest(spectra[mode], expected), tolerance * Largest(expected)) << mode;
    }
    omp_set_num_threads(saved);
    EXPECT_LE(Largest(spectra[0], spectra[1]), 1e-10 * Largest(spectra[1]));
    EXPECT_GT(Largest(spectra[2], spectra[1]), 1e-3 * Largest(spectra[1]));
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

// Soil without stiffness or mass: every line singular. Standard output goes to standard error
// for the death test.
void SolveEmptySoilWithOutputOnStderr() {
    dup2(2, 1);
    SoilColumn column(4, 4, ElasticMaterial(0.0, 0.0, 0.3, 0.0));
    std::vector<double> acc(64, 0.0);
    acc[1] = 1.0;
    column.SetWave(acc, 0.05, 5.0);
    omp_set_num_threads(2);
    RunSolution(column.analysis, false, "/nonexistent-free-field/");
}

TEST(FrequencyLoopDeathTest, FailedLineEndsTheWholeRunFromItsThread) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        SolveEmptySoilWithOutputOnStderr(), ::testing::ExitedWithCode(-1234 & 0xff),
        "0 pivotがあります。factorizationが問題ですSolve Error : -4 開発元にご連絡下さい\n");
}

}  // namespace
