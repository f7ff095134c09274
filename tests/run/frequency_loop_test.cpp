#include "run/frequency_loop.hpp"

#include <gtest/gtest.h>
#include <omp.h>
#include <unistd.h>

#include <boost/make_shared.hpp>
#include <cstring>
#include <sstream>

#include "boundary/element_matrices.hpp"
#include "boundary/free_field.hpp"
#include "boundary/transmitting_boundary.hpp"
#include "boundary/viscous_boundary.hpp"
#include "run/line_system_chain.hpp"
#include "run/line_vectors.hpp"
#include "run/run_control.hpp"
#include "run/soil_column.hpp"
#include "run/solution_stage.hpp"
#include "support/project_fixture.hpp"

namespace {

// A section of 4 x 3 four-node cells, 8 m by 6 m, with the side matrices and free-field columns
// of a free-field analysis and dashpots on both sides. Lines 0 to 6 of 3.2 s.
struct SideModel {
    ProjectFolder project;
    CAnalysisData analysis;
    std::vector<int> left, right;  // side nodes above the base

    explicit SideModel(int mode) {
        BuildStructuredMesh(SectionGrid{4, 4, 3, 8.0, 6.0},
                            ElasticMaterial(60.0, 0.05, 0.3, 1.8e-3), analysis);
        for (size_t p = 0; p < analysis.nodes.size(); ++p) {
            const CNode& node = analysis.nodes[p];
            if (node.y > 0.0 && node.x == 0.0) left.push_back(static_cast<int>(p));
            if (node.y > 0.0 && node.x == 8.0) right.push_back(static_cast<int>(p));
        }
        analysis.sideBoundaryType = mode;
        std::vector<double> acc(64, 0.0);
        acc[3] = 1.0;
        SetTestWave(analysis, acc, 0.05, 2.0);
        for (const char* side : {"RIGHT", "LEFT"}) {
            const std::vector<int>& nodes = side[0] == 'R' ? right : left;
            const double scale = side[0] == 'R' ? 1.0 : -0.8;
            const std::string prefix = "output_ff/" + std::string(1, side[0]);
            project.Write("output_ff/" + std::string(side) + "Ematrix.dat",
                          SideBlock(nodes, 0, std::abs(scale)));
            for (int i = 1; i < analysis.frequencyCount; ++i)
                project.Write(prefix + "EMat" + std::to_string(i) + ".dat",
                              SideBlock(nodes, i, std::abs(scale) / 2));
            for (size_t k = 0; k < nodes.size(); ++k) {
                std::ostringstream text;
                text << nodes[k] << '\n';
                for (int i = 0; i <= analysis.frequencyCount; ++i)
                    text << 0.01 * (k + 1) * i << ' ' << 0.002 * scale * i << '\n';
                project.Write(prefix + "FF_" + std::to_string(k) + ".dat", text.str());
            }
        }
        // Base (101) and side (201) dashpots in x and y along both sides.
        for (const std::vector<int>* side : {&left, &right})
            for (size_t k = 0; k + 1 < side->size(); ++k)
                for (int code : {101, 201})
                    for (int direction : {0, 1}) {
                        auto c = boost::make_shared<CBCVisco>();
                        c->typeCode = code;
                        c->rowNode = c->edgeNode1 = (*side)[k];
                        c->edgeNode2 = (*side)[k + 1];
                        c->direction = direction;
                        c->edgeNodeCount = 2;
                        c->term2 = Complex(0.6, 0.01 * code);
                        c->term3 = Complex(0.3, 0.0);
                        analysis.boundaryConds.push_back(c);
                    }
    }

    std::string Folder() const { return project.Path("output_ff/"); }

    // A dense block over the x and y of a side's nodes; line 0 stands for the constant matrix.
    // Some entries are left out on some lines and one is written twice.
    static std::string SideBlock(const std::vector<int>& nodes, int line, double scale) {
        std::ostringstream text;
        for (int a : nodes)
            for (int b : nodes)
                for (int da : {0, 1})
                    for (int db : {0, 1}) {
                        const int row = 2 * a + da, col = 2 * b + db;
                        if (line > 0 && (row + col + line) % 4 == 0) continue;
                        const double v = scale * (a == b && da == db ? 40.0 : 3.0 / (1 + row % 5));
                        text << row << ' ' << col << ' ' << v * (1 + 0.1 * line) << ' '
                             << 0.2 * v * line << '\n';
                    }
        text << 2 * nodes[0] << ' ' << 2 * nodes[0] << " 1.5 0.25\n";
        return text.str();
    }

    void Solve() { SolveCapturingConsole(analysis, false, Folder()); }

    // Every line solved the plain way from the same files, one new matrix per operation.
    std::vector<Complex> SolvePlainWay() {
        const size_t n = static_cast<size_t>(analysis.freeDofCount);
        const auto& elements = analysis.elements;
        ComplexVector inertia(2 * analysis.nodes.size());
        AssembleInertiaLoad(elements.size(), analysis.nodes, elements, inertia);
        SparseComplexMatrix K(n), M(n), base(n), side(n), right(n), left(n);
        AssembleStiffnessMatrix(elements.size(), analysis.equationMap, analysis.nodes, elements, K);
        AssembleMassMatrix(elements.size(), analysis.equationMap, analysis.nodes, elements, M);
        AssembleViscousMatrix(base, analysis, false);
        if (analysis.sideBoundaryType == 1) AssembleViscousMatrix(side, analysis, true);
        ReadFixedEMatrix(right, Folder() + "RIGHTEmatrix.dat", analysis);
        ReadFixedEMatrix(left, Folder() + "LEFTEmatrix.dat", analysis);
        const SparseComplexMatrix sideStatic = right + left;
        std::vector<ComplexVector> motion(analysis.frequencyCount, ComplexVector(n));
        ReadFreeFieldFiles(motion, Folder(), analysis);

        LineSystemTerms terms;
        terms.sideBoundaryType = analysis.sideBoundaryType;
        terms.duration = 64 * 0.05;
        terms.mass = &M;
        terms.baseViscous = &base;
        terms.sideViscous = &side;
        terms.sideStatic = &sideStatic;
        terms.freeFieldMotion = &motion;
        terms.inertiaLoad = &inertia;
        const std::string folder = Folder();
        terms.lineMatrix = [&](int i) {
            SparseComplexMatrix E(n);
            ReadFrequencyEMatrix(E, i, folder, analysis);
            return E;
        };
        EnsureSpectrumLength(analysis.nodes, static_cast<size_t>(analysis.frequencyCount));
        for (int i = 1; i < analysis.frequencyCount; ++i) SolveLineByChain(terms, K, i, analysis);
        return Spectra();
    }

    std::vector<Complex> Spectra() const {
        std::vector<Complex> all;
        for (const CNode& node : analysis.nodes)
            for (const ComplexVector* s : {&node.dispX, &node.dispY})
                all.insert(all.end(), s->data.begin(), s->data.begin() + analysis.frequencyCount);
        return all;
    }
};

// Every side treatment on one thread and on two, against the plain way. Without side matrices
// of their own the two ways share a pattern and agree bit for bit; the union pattern of
// transmitting sides orders the elimination differently.
TEST(FrequencyLoop, EverySideTreatmentSolvesAsThePlainWayOnAnyThreadCount) {
    const int saved = omp_get_max_threads();
    for (const auto& [mode, tolerance] : {std::pair{0, 1e-12}, {1, 0.0}, {2, 0.0}}) {
        SideModel one(mode), two(mode), plain(mode);
        omp_set_num_threads(1);
        one.Solve();
        omp_set_num_threads(2);
        two.Solve();
        const std::vector<Complex> expected = plain.SolvePlainWay(), a = one.Spectra(),
                                   b = two.Spectra();
        ASSERT_EQ(a.size(), expected.size());
        EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof(Complex)), 0) << mode;
        double largest = 0.0;
        for (const Complex& v : expected) largest = std::max(largest, std::abs(v));
        ASSERT_GT(largest, 0.0);
        for (size_t k = 0; k < b.size(); ++k)
            EXPECT_LE(std::abs(b[k] - expected[k]), tolerance * largest)
                << "mode " << mode << " entry " << k;
    }
    omp_set_num_threads(saved);
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
    RunSolution(column.analysis, CRunControl("", ""), "/nonexistent-free-field/");
}

TEST(FrequencyLoopDeathTest, FailedLineEndsTheWholeRunFromItsThread) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        SolveEmptySoilWithOutputOnStderr(), ::testing::ExitedWithCode(-1234 & 0xff),
        "0 pivotがあります。factorizationが問題ですSolve Error : -4 開発元にご連絡下さい\n");
}

}  // namespace
