#include "fem/element_matrices.hpp"

#include <gtest/gtest.h>
#include <omp.h>

#include <boost/make_shared.hpp>
#include <cmath>
#include <numbers>
#include <tuple>

#include "element/constant_operators.hpp"
#include "structured_mesh.hpp"

namespace {

// Three elements of one material (rho1 2.0, rho2 1.5), every degree of freedom free: a
// skewed quadrilateral of area 1.115, an 8-node rectangle 2 x 1 (rho2) and a right triangle 1 x 2.
struct Mesh {
    std::vector<CNode> nodes;
    std::vector<CElement> elements;
    std::vector<int32_t> equationMap;
    boost::shared_ptr<DAT_Elastic> material = boost::make_shared<DAT_Elastic>();

    Mesh() {
        BuildConstantOperators();
        material->rho1 = 2.0;
        material->rho2 = 1.5;
        material->G = 100.0;
        material->h = 0.05;
        material->nu = 0.3;
        material->UpdateModuli();
        Element({Node(0, 0), Node(1.2, 0.1), Node(1.0, 1.1), Node(-0.1, 0.9)});
        Element({Node(2, 0), Node(4, 0), Node(4, 1), Node(2, 1), Node(3, 0), Node(4, 0.5),
                 Node(3, 1), Node(2, 0.5)},
                false);
        Element({Node(6, 0), Node(5, 2), Node(5, 0), Node(5, 1), Node(5.5, 0), Node(5.5, 1)});
    }
    int Node(double x, double y) {
        nodes.emplace_back(x, y, 0.0);
        equationMap.push_back(static_cast<int32_t>(equationMap.size()));
        equationMap.push_back(static_cast<int32_t>(equationMap.size()));
        return static_cast<int>(nodes.size()) - 1;
    }
    // Nodes in the order of the element's shape function.
    void Element(std::vector<int> ids, bool firstDensity = true) {
        const int n = static_cast<int>(ids.size());
        CElement& e = elements.emplace_back();
        if (n == 4) e.shapeFunction = boost::make_shared<IsoParametricQuadSquare>();
        if (n == 8) e.shapeFunction = boost::make_shared<IsoParametricSecondSquare>();
        if (n == 6) e.shapeFunction = boost::make_shared<ShapeFuncOfSecondTriangle>();
        e.gaussRule = boost::make_shared<DefaultGauss>(n == 4 ? 2 : n == 8 ? 3 : 7, n);
        e.gaussPoints = e.gaussRule->points;
        e.nodes = std::move(ids);
        e.material = material;
        e.usesFirstDensity = firstDensity;
    }
    // Nodal values of the displacement field (a x + b y, c x + d y).
    ComplexVector LinearField(double a, double b, double c, double d) const {
        ComplexVector u(2 * nodes.size());
        for (size_t p = 0; p < nodes.size(); ++p) {
            u[2 * p] = a * nodes[p].x + b * nodes[p].y;
            u[2 * p + 1] = c * nodes[p].x + d * nodes[p].y;
        }
        return u;
    }
    SparseComplexMatrix Assemble(decltype(&AssembleMassMatrix) assemble) const {
        SparseComplexMatrix A;
        assemble(elements.size(), equationMap, nodes, elements, A);
        return A;
    }
};

TEST(MassAndInertia, EachDirectionCarriesTheMassAndTheLoadIsMinusTheMassInX) {
    Mesh mesh;
    const double mass = 2.0 * 1.115 + 1.5 * 2.0 + 2.0 * 1.0;
    const SparseComplexMatrix M = mesh.Assemble(AssembleMassMatrix);
    ASSERT_EQ(M.RowCount(), 2 * mesh.nodes.size());
    double byDirection[2][2] = {};
    for (size_t i = 0; i < M.RowCount(); ++i)
        for (const auto& [j, v] : M.rows[i]) {
            EXPECT_EQ(v.imag(), 0.0);
            byDirection[i % 2][j % 2] += v.real();
        }
    EXPECT_NEAR(byDirection[0][0], mass, 1e-12);
    EXPECT_NEAR(byDirection[1][1], mass, 1e-12);
    EXPECT_EQ(byDirection[0][1], 0.0);

    ComplexVector load(2 * mesh.nodes.size());
    AssembleInertiaLoad(mesh.elements.size(), mesh.nodes, mesh.elements, load);
    Complex x = 0.0, y = 0.0;
    for (size_t p = 0; p < mesh.nodes.size(); ++p) x += load[2 * p], y += load[2 * p + 1];
    EXPECT_NEAR(x.real(), -mass, 1e-12);
    EXPECT_EQ(x.imag(), 0.0);
    EXPECT_EQ(y, Complex(0.0));
}

TEST(StiffnessMatrix, RigidMotionsGiveNoForceAndUniformStrainItsEnergy) {
    Mesh mesh;
    const SparseComplexMatrix K = mesh.Assemble(AssembleStiffnessMatrix);
    for (const ComplexVector& rigid :
         {mesh.LinearField(0, 0, 0, 0), mesh.LinearField(0, -1, 1, 0)}) {
        ComplexVector u = rigid;
        for (size_t p = 0; p < mesh.nodes.size(); ++p) u[2 * p] += 1.0, u[2 * p + 1] += 0.5;
        for (const Complex& f : (K * u).data) EXPECT_NEAR(std::abs(f), 0.0, 1e-11);
    }
    // u^T K u = area eps^T D eps for a uniform strain, a plain transpose.
    const ComplexVector u = mesh.LinearField(1e-3, 2e-3, -4e-3, 5e-4);
    const ComplexVector eps{1e-3, 5e-4, 0.0, -2e-3};
    const ComplexVector Ku = K * u, De = Multiply(mesh.material->D, eps);
    Complex energy = 0.0, perArea = 0.0;
    for (size_t i = 0; i < u.size(); ++i) energy += u[i] * Ku[i];
    for (size_t i = 0; i < 4; ++i) perArea += eps[i] * De[i];
    EXPECT_NEAR(std::abs(energy - (1.115 + 2.0 + 1.0) * perArea), 0.0, 1e-12 * std::abs(energy));
}

TEST(Assembly, ResultDoesNotDependOnTheThreadCount) {
    CAnalysisData a;  // 1200 triangles: more than one block holds
    BuildStructuredMesh(SectionGrid{6, 30, 20, 15.0, 5.0}, ElasticMaterial(60, 0.05, 0.3, 2e-3), a);
    const int threads = omp_get_max_threads();
    SparseComplexMatrix serial, parallel;
    omp_set_num_threads(1);
    AssembleStiffnessMatrix(a.elements.size(), a.equationMap, a.nodes, a.elements, serial);
    omp_set_num_threads(std::max(threads, 3));
    AssembleStiffnessMatrix(a.elements.size(), a.equationMap, a.nodes, a.elements, parallel);
    omp_set_num_threads(threads);
    EXPECT_EQ(serial.rows, parallel.rows);
}

// Line k: x displacement eps x, y displacement gamma x, wave amplitude a. A line below P/2
// gives 2 a eps cos(2 pi k t / P); line 0 and line P/2 have no mirror and give a eps.
TEST(StrainHistory, LinesGiveCosinesAndPrivateTransformAgrees) {
    const int P = 16;
    const std::tuple<int, double, double, double> lines[] = {
        {0, 2e-3, 0.0, 0.5}, {3, 1e-3, 4e-3, 2.0}, {P / 2, 1e-3, 0.0, 1.0}};
    const Mesh mesh;
    CAnalysisData analysis;
    analysis.nodes = mesh.nodes;
    analysis.frequencyCount = P / 2 + 1;
    analysis.waveSpectrum = ComplexVector(P);
    analysis.transformHandle = std::make_unique<FourierTransform>(P);
    for (CNode& node : analysis.nodes) node.dispX = node.dispY = ComplexVector(P / 2 + 1);
    for (const auto& [k, eps, gamma, a] : lines) {
        analysis.waveSpectrum[k] = a;
        for (CNode& node : analysis.nodes)
            node.dispX[k] = eps * node.x, node.dispY[k] = gamma * node.x;
    }
    StrainSeries shared, own;
    shared[2] = ComplexVector{Complex(7.0)};
    GaussStrainHistory(mesh.elements[0], 1, analysis, shared);
    GaussStrainHistoryPrivate(mesh.elements[0], 1, analysis, own);
    EXPECT_EQ(shared[2].size(), 1u);  // the z slot is left as it was
    for (int t = 0; t < P; ++t) {
        const double wave = 2 * 2.0 * std::cos(2 * std::numbers::pi * 3 * t / P);
        EXPECT_NEAR(shared[0][t].real(), 1e-3 + 1e-3 * wave + 1e-3 * (t % 2 ? -1 : 1), 1e-15);
        EXPECT_NEAR(shared[1][t].real(), 0.0, 1e-15);
        EXPECT_NEAR(shared[3][t].real(), 4e-3 * wave, 1e-15);
        EXPECT_NEAR(shared[0][t].imag(), 0.0, 1e-15);
        for (int c : {0, 1, 3}) EXPECT_NEAR(std::abs(shared[c][t] - own[c][t]), 0.0, 1e-18);
    }
}

TEST(StrainHistoryDeathTest, PointNumberBeyondTheElementEndsTheRun) {
    const Mesh mesh;
    StrainSeries series;
    EXPECT_EXIT(GaussStrainHistory(mesh.elements[0], 4, CAnalysisData(), series),
                testing::ExitedWithCode(255), "");
}

}  // namespace
