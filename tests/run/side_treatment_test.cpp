#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <sstream>

#include "boundary/element_matrices.hpp"
#include "boundary/free_field.hpp"
#include "boundary/transmitting_boundary.hpp"
#include "boundary/viscous_boundary.hpp"
#include "run/line_system_chain.hpp"
#include "run/line_vectors.hpp"
#include "run/soil_column.hpp"
#include "structured_mesh.hpp"
#include "support/project_fixture.hpp"

namespace {

// A section of 4 x 3 four-node cells, 8 m by 6 m, base fixed, with side matrices, free-field
// columns and side dashpots as the free-field analysis and the boundary file would give them.
struct SideModel {
    ProjectFolder project;
    CAnalysisData analysis;
    std::vector<int> left, right;  // side nodes above the base

    explicit SideModel(int mode) {
        SectionGrid grid;
        grid.columns = 4;
        grid.layers = 3;
        grid.width = 8.0;
        grid.depth = 6.0;
        BuildStructuredMesh(grid, ElasticMaterial(60.0, 0.05, 0.3, 1.8e-3), analysis);
        for (size_t p = 0; p < analysis.nodes.size(); ++p) {
            if (analysis.nodes[p].y == 0.0) continue;
            if (analysis.nodes[p].x == 0.0) left.push_back(static_cast<int>(p));
            if (analysis.nodes[p].x == 8.0) right.push_back(static_cast<int>(p));
        }
        analysis.sideBoundaryType = mode;
        std::vector<double> acc(64, 0.0);
        acc[3] = 1.0;
        SetTestWave(analysis, acc, 0.05, 2.0);  // lines 0 .. 6
        WriteSideMatrices();
        WriteFreeFieldColumns();
        AddDashpots();
    }

    std::string Folder() const { return project.Path("output_ff/"); }

    // A dense block over the x and y of a side's nodes; line 0 stands for the constant matrix.
    // Some entries are left out on some lines and one is written twice.
    std::string SideBlock(const std::vector<int>& nodes, int line, double scale) const {
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

    void WriteSideMatrices() const {
        project.Write("output_ff/RIGHTEmatrix.dat", SideBlock(right, 0, 1.0));
        project.Write("output_ff/LEFTEmatrix.dat", SideBlock(left, 0, 0.8));
        for (int i = 1; i < analysis.frequencyCount; ++i) {
            project.Write("output_ff/REMat" + std::to_string(i) + ".dat", SideBlock(right, i, 0.5));
            project.Write("output_ff/LEMat" + std::to_string(i) + ".dat", SideBlock(left, i, 0.4));
        }
    }

    void WriteFreeFieldColumns() const {
        for (size_t k = 0; k < right.size(); ++k) {
            std::ostringstream r, l;
            r << right[k] << '\n';
            l << left[k] << '\n';
            for (int i = 0; i <= analysis.frequencyCount; ++i) {
                r << 0.01 * (k + 1) * i << ' ' << -0.002 * i << '\n';
                l << 0.012 * (k + 1) * i << ' ' << 0.001 * i << '\n';
            }
            project.Write("output_ff/RFF_" + std::to_string(k) + ".dat", r.str());
            project.Write("output_ff/LFF_" + std::to_string(k) + ".dat", l.str());
        }
    }

    // Dashpots in x and y on both sides, as base (code 101) and side (code 201) conditions.
    void AddDashpots() {
        for (const std::vector<int>* side : {&left, &right})
            for (size_t k = 0; k + 1 < side->size(); ++k)
                for (int code : {101, 201})
                    for (int direction : {0, 1}) {
                        auto c = boost::make_shared<CBCVisco>();
                        c->typeCode = code;
                        c->rowNode = (*side)[k];
                        c->direction = direction;
                        c->edgeNodeCount = 2;
                        c->edgeNode1 = (*side)[k];
                        c->edgeNode2 = (*side)[k + 1];
                        c->term2 = Complex(0.6, 0.01 * code);
                        c->term3 = Complex(0.3, 0.0);
                        analysis.boundaryConds.push_back(c);
                    }
    }

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
            for (int i = 0; i < analysis.frequencyCount; ++i) {
                all.push_back(node.dispX[i]);
                all.push_back(node.dispY[i]);
            }
        return all;
    }
};

void ExpectSolutionStageEqualsPlainWay(int mode) {
    SideModel fast(mode), plain(mode);
    SolveCapturingConsole(fast.analysis, false, fast.Folder());
    const std::vector<Complex> expected = plain.SolvePlainWay();
    const std::vector<Complex> actual = fast.Spectra();
    ASSERT_EQ(actual.size(), expected.size());
    double largest = 0.0;
    for (const Complex& v : expected) largest = std::max(largest, std::abs(v));
    ASSERT_GT(largest, 0.0);
    for (size_t k = 0; k < actual.size(); ++k)
        EXPECT_NEAR(std::abs(actual[k] - expected[k]), 0.0, 1e-12 * largest) << "entry " << k;
}

TEST(SideTreatment, TransmittingSidesFromTheFilesSolveAsThePlainWay) {
    ExpectSolutionStageEqualsPlainWay(0);
}

TEST(SideTreatment, ViscousSidesSolveAsThePlainWay) {
    ExpectSolutionStageEqualsPlainWay(1);
}

TEST(SideTreatment, FreeFieldLoadChangesTheResponseOnlyWithSides) {
    SideModel sides(1), none(2);
    SolveCapturingConsole(sides.analysis, false, sides.Folder());
    SolveCapturingConsole(none.analysis, false, none.Folder());
    EXPECT_NE(sides.Spectra(), none.Spectra());
}

}  // namespace
