#include "boundary/element_matrices.hpp"

#include <gtest/gtest.h>
#include <omp.h>

#include <boost/make_shared.hpp>
#include <cmath>
#include <map>

#include "element/constant_operators.hpp"

namespace {

const double kPi = 3.141592653589793;

// A small mesh of one material (rho1 2.0, rho2 1.5), all degrees of freedom free.
struct Mesh {
    std::vector<CNode> nodes;
    std::vector<CElement> elements;
    std::vector<int32_t> equationMap;
    boost::shared_ptr<DAT_Material> material;

    Mesh() {
        BuildConstantOperators();
        auto elastic = boost::make_shared<DAT_Elastic>();
        elastic->rho1 = 2.0;
        elastic->rho2 = 1.5;
        elastic->G = 100.0;
        elastic->h = 0.05;
        elastic->nu = 0.3;
        elastic->UpdateModuli();
        material = elastic;
    }

    int Node(double x, double y) {
        nodes.emplace_back(x, y, 0.0);
        equationMap.push_back(static_cast<int32_t>(equationMap.size()));
        equationMap.push_back(static_cast<int32_t>(equationMap.size()));
        return static_cast<int>(nodes.size()) - 1;
    }

    // Nodes in the order of the element's shape function.
    CElement& Element(std::vector<int> ids, bool firstDensity = true) {
        CElement e;
        const int n = static_cast<int>(ids.size());
        if (n == 4) e.shapeFunction = boost::make_shared<IsoParametricQuadSquare>();
        if (n == 8) e.shapeFunction = boost::make_shared<IsoParametricSecondSquare>();
        if (n == 6) e.shapeFunction = boost::make_shared<ShapeFuncOfSecondTriangle>();
        e.gaussRule = boost::make_shared<DefaultGauss>(n == 4 ? 2 : n == 8 ? 3 : 7, n);
        e.gaussPoints = e.gaussRule->points;
        e.nodes = std::move(ids);
        e.material = material;
        e.usesFirstDensity = firstDensity;
        elements.push_back(e);
        return elements.back();
    }

    // A skewed 4-node quadrilateral, an 8-node rectangle 2 x 1 and a 6-node right triangle 1 x 2.
    void AddOneOfEachKind() {
        Element({Node(0, 0), Node(1.2, 0.1), Node(1.0, 1.1), Node(-0.1, 0.9)});
        Element({Node(2, 0), Node(4, 0), Node(4, 1), Node(2, 1), Node(3, 0), Node(4, 0.5),
                 Node(3, 1), Node(2, 0.5)},
                false);
        Element({Node(6, 0), Node(5, 2), Node(5, 0), Node(5, 1), Node(5.5, 0), Node(5.5, 1)});
    }

    // Nodal values of a linear displacement field (a x + b y, c x + d y).
    ComplexVector LinearField(double a, double b, double c, double d) const {
        ComplexVector u(2 * nodes.size());
        for (size_t p = 0; p < nodes.size(); ++p) {
            u[2 * p] = a * nodes[p].x + b * nodes[p].y;
            u[2 * p + 1] = c * nodes[p].x + d * nodes[p].y;
        }
        return u;
    }
};

double QuadArea(const std::vector<CNode>& n) {
    double twice = 0.0;
    for (size_t i = 0; i < 4; ++i) twice += n[i].x * n[(i + 1) % 4].y - n[(i + 1) % 4].x * n[i].y;
    return twice / 2;
}

TEST(StrainMatrix, UnitSquareCentreAndUniformStrain) {
    Mesh mesh;
    const CElement& e =
        mesh.Element({mesh.Node(0, 0), mesh.Node(1, 0), mesh.Node(1, 1), mesh.Node(0, 1)});
    ComplexMatrix B;
    const double detJ = StrainMatrixAt(e, CGauss(0, 0, 4.0), mesh.nodes, B);
    EXPECT_DOUBLE_EQ(detJ, 0.25);
    ASSERT_EQ(B.rows, 4u);
    ASSERT_EQ(B.cols, 8u);
    const double expectedDx[4] = {-0.5, 0.5, 0.5, -0.5}, expectedDy[4] = {-0.5, -0.5, 0.5, 0.5};
    for (uint32_t j = 0; j < 4; ++j) {
        EXPECT_EQ(B(0, 2 * j), Complex(expectedDx[j]));
        EXPECT_EQ(B(1, 2 * j + 1), Complex(expectedDy[j]));
        EXPECT_EQ(B(3, 2 * j), Complex(expectedDy[j]));
        EXPECT_EQ(B(3, 2 * j + 1), Complex(expectedDx[j]));
        EXPECT_EQ(B(2, 2 * j), Complex(0.0));
        EXPECT_EQ(B(0, 2 * j + 1), Complex(0.0));
    }
}

TEST(MassAndInertia, EachDirectionCarriesTheMassAndTheLoadIsMinusTheMassInX) {
    Mesh mesh;
    mesh.AddOneOfEachKind();
    // The 8-node element (2 x 1) takes rho2 = 1.5, the others rho1 = 2.
    const double mass = 2.0 * QuadArea({mesh.nodes.begin(), mesh.nodes.begin() + 4}) + 3.0 + 2.0;
    SparseComplexMatrix M;
    AssembleMassMatrix(mesh.elements.size(), mesh.equationMap, mesh.nodes, mesh.elements, M);
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
    mesh.AddOneOfEachKind();
    SparseComplexMatrix K;
    AssembleStiffnessMatrix(mesh.elements.size(), mesh.equationMap, mesh.nodes, mesh.elements, K);
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
    const double area = QuadArea({mesh.nodes.begin(), mesh.nodes.begin() + 4}) + 2.0 + 1.0;
    EXPECT_NEAR(std::abs(energy - area * perArea), 0.0, 1e-12 * std::abs(energy));
}

TEST(Assembly, FixedDegreesOfFreedomAreDroppedAndTheRestKeepTheirTerms) {
    Mesh mesh;
    mesh.AddOneOfEachKind();
    SparseComplexMatrix full, reduced;
    AssembleStiffnessMatrix(mesh.elements.size(), mesh.equationMap, mesh.nodes, mesh.elements,
                            full);
    // Fix the first two nodes (degrees of freedom 0..3); the others move up by four.
    for (int32_t& eq : mesh.equationMap) eq = eq < 4 ? -1 : eq - 4;
    AssembleStiffnessMatrix(mesh.elements.size(), mesh.equationMap, mesh.nodes, mesh.elements,
                            reduced);
    ASSERT_EQ(reduced.RowCount(), full.RowCount() - 4);
    for (size_t i = 0; i < reduced.RowCount(); ++i) {
        std::map<int32_t, Complex> expected;
        for (const auto& [j, v] : full.rows[i + 4])
            if (j >= 4) expected.emplace(j - 4, v);
        EXPECT_EQ(reduced.rows[i], expected) << "row " << i;
    }
}

TEST(Assembly, ResultDoesNotDependOnTheThreadCount) {
    Mesh mesh;
    const int nx = 40, ny = 30;  // more elements than one block holds
    for (int j = 0; j <= ny; ++j)
        for (int i = 0; i <= nx; ++i) mesh.Node(i * 0.5 + 0.01 * j, j * 0.25);
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) {
            const int a = j * (nx + 1) + i;
            mesh.Element({a, a + 1, a + nx + 2, a + nx + 1});
        }
    const int threads = omp_get_max_threads();
    SparseComplexMatrix serial, parallel;
    omp_set_num_threads(1);
    AssembleStiffnessMatrix(mesh.elements.size(), mesh.equationMap, mesh.nodes, mesh.elements,
                            serial);
    omp_set_num_threads(std::max(threads, 3));
    AssembleStiffnessMatrix(mesh.elements.size(), mesh.equationMap, mesh.nodes, mesh.elements,
                            parallel);
    omp_set_num_threads(threads);
    EXPECT_EQ(serial.rows, parallel.rows);
    SparseComplexMatrix M;
    AssembleMassMatrix(mesh.elements.size(), mesh.equationMap, mesh.nodes, mesh.elements, M);
    double total = 0.0;
    for (const auto& row : M.rows)
        for (const auto& [j, v] : row) total += v.real();
    EXPECT_NEAR(total, 2 * 2.0 * (nx * 0.5) * (ny * 0.25), 1e-9);
}

// A unit square whose x motion at one frequency line is a uniform strain eps.
class StrainHistoryTest : public testing::Test {
  protected:
    static constexpr int kLength = 16;
    Mesh mesh;
    CAnalysisData analysis;

    void SetUp() override {
        mesh.Element({mesh.Node(0, 0), mesh.Node(1, 0), mesh.Node(1, 1), mesh.Node(0, 1)});
        analysis.nodes = mesh.nodes;
        analysis.elements = mesh.elements;
        analysis.frequencyCount = kLength / 2 + 1;
        analysis.waveSpectrum = ComplexVector(kLength);
        analysis.transformHandle = std::make_unique<FourierTransform>(kLength);
        for (CNode& node : analysis.nodes) {
            node.dispX = ComplexVector(kLength / 2 + 1);
            node.dispY = ComplexVector(kLength / 2 + 1);
        }
    }

    // Spectrum at line k: x displacement eps x, y displacement gamma x; wave amplitude a.
    void SetLine(int k, double eps, double gamma, Complex a) {
        for (CNode& node : analysis.nodes) {
            node.dispX[k] = eps * node.x;
            node.dispY[k] = gamma * node.x;
        }
        analysis.waveSpectrum[k] = a;
    }
};

TEST_F(StrainHistoryTest, SingleLineGivesACosine) {
    SetLine(3, 1e-3, 4e-3, Complex(2.0, 0.0));
    StrainSeries series;
    series[2] = ComplexVector{Complex(7.0)};
    GaussStrainHistory(analysis.elements[0], 1, analysis, series);
    EXPECT_EQ(series[2].size(), 1u);  // the z slot is left as it was
    for (int t = 0; t < kLength; ++t) {
        const double wave = 2 * 2.0 * std::cos(2 * kPi * 3 * t / kLength);
        EXPECT_NEAR(series[0][t].real(), 1e-3 * wave, 1e-15);
        EXPECT_NEAR(series[1][t].real(), 0.0, 1e-15);
        EXPECT_NEAR(series[3][t].real(), 4e-3 * wave, 1e-15);
        EXPECT_NEAR(series[0][t].imag(), 0.0, 1e-15);
    }
}

TEST_F(StrainHistoryTest, NyquistLineHasNoMirrorAndPrivateTransformAgrees) {
    SetLine(kLength / 2, 1e-3, 0.0, Complex(1.0, 0.0));
    SetLine(0, 2e-3, 0.0, Complex(0.5, 0.0));
    StrainSeries shared, own;
    GaussStrainHistory(analysis.elements[0], 0, analysis, shared);
    GaussStrainHistoryPrivate(analysis.elements[0], 0, analysis, own);
    for (int t = 0; t < kLength; ++t) {
        EXPECT_NEAR(shared[0][t].real(), 1e-3 + 1e-3 * (t % 2 ? -1 : 1), 1e-15);
        for (int c : {0, 1, 3}) EXPECT_NEAR(std::abs(shared[c][t] - own[c][t]), 0.0, 1e-18);
    }
}

using StrainHistoryDeathTest = StrainHistoryTest;

TEST_F(StrainHistoryDeathTest, PointNumberBeyondTheElementEndsTheRun) {
    StrainSeries series;
    EXPECT_EXIT(GaussStrainHistory(analysis.elements[0], 4, analysis, series),
                testing::ExitedWithCode(255), "");
}

}  // namespace
