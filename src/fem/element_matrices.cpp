#include "fem/element_matrices.hpp"

#include <omp.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>

#include "base/platform.hpp"
#include "base/run_stop.hpp"

namespace {

// The largest element has 8 nodes; the per-point work uses fixed local arrays of that size.
constexpr int kMaxNodes = 8;
constexpr int kMaxDofs = 2 * kMaxNodes;
// Elements whose matrices are held at once between forming and adding into the global matrix.
constexpr size_t kBlockSize = 1024;

using StrainRows = double[4][kMaxDofs];

// The element's node count, checked against its shape function and the local array sizes.
int NodeCount(const CElement& element) {
    const size_t n = element.nodes.size();
    if (!element.shapeFunction || n != static_cast<size_t>(element.shapeFunction->nodeCount) ||
        n > static_cast<size_t>(kMaxNodes)) {
        StopOnBadModel("element of " + std::to_string(n) +
                       " nodes does not fit its shape function");
    }
    return static_cast<int>(n);
}

// Row j: x and y of the element's node j.
void FillNodeCoordinates(const CElement& element, const std::vector<CNode>& nodes, int n,
                         double* xy) {
    for (int j = 0; j < n; ++j) {
        const CNode& node = nodes[element.nodes[j]];
        xy[2 * j] = node.x;
        xy[2 * j + 1] = node.y;
    }
}

// J = dN X (sums over the nodes in ascending order); returns detJ with its sign.
double Jacobian(const RealMatrix& dN, const double* xy, int n, double (&J)[2][2]) {
    for (int r = 0; r < 2; ++r)
        for (int c = 0; c < 2; ++c) {
            double sum = 0.0;
            for (int j = 0; j < n; ++j) sum += dN(r, j) * xy[2 * j + c];
            J[r][c] = sum;
        }
    return J[0][0] * J[1][1] - J[0][1] * J[1][0];
}

}  // namespace

double JacobianDeterminantAt(const CElement& element, const CPoint& natural,
                             const std::vector<CNode>& nodes) {
    const int n = NodeCount(element);
    double xy[2 * kMaxNodes];
    FillNodeCoordinates(element, nodes, n, xy);
    double J[2][2];
    return Jacobian(element.shapeFunction->GetdNMatrix(natural), xy, n, J);
}

namespace {

// The strain-displacement rows (ex, ey, ez, gxy) at a point, all real; returns detJ.
double RealStrainRows(const CElement& element, const CGauss& point, const std::vector<CNode>& nodes,
                      int n, StrainRows& b) {
    double xy[2 * kMaxNodes];
    FillNodeCoordinates(element, nodes, n, xy);
    const RealMatrix dN = element.shapeFunction->GetdNMatrix(point);
    double J[2][2];
    const double detJ = Jacobian(dN, xy, n, J);
    const double inverse[2][2] = {{J[1][1] / detJ, -J[0][1] / detJ},
                                  {-J[1][0] / detJ, J[0][0] / detJ}};
    for (int r = 0; r < 4; ++r)
        for (int k = 0; k < 2 * n; ++k) b[r][k] = 0.0;
    for (int j = 0; j < n; ++j) {
        const double dx = inverse[0][0] * dN(0, j) + inverse[0][1] * dN(1, j);
        const double dy = inverse[1][0] * dN(0, j) + inverse[1][1] * dN(1, j);
        b[0][2 * j] = dx;
        b[1][2 * j + 1] = dy;
        b[3][2 * j] = dy;
        b[3][2 * j + 1] = dx;
    }
    return detJ;
}

// Consistent mass matrix, 2n x 2n, row by row into out.
void ElementMass(const CElement& element, const std::vector<CNode>& nodes, Complex* out) {
    const int n = NodeCount(element);
    const int dofs = 2 * n;
    const double rho = element.Density();
    double xy[2 * kMaxNodes];
    FillNodeCoordinates(element, nodes, n, xy);
    double me[kMaxDofs][kMaxDofs] = {};
    for (const CGauss& point : element.gaussPoints) {
        const RealMatrix N = element.shapeFunction->GetNMatrix(point);
        const RealMatrix dN = element.shapeFunction->GetdNMatrix(point);
        double J[2][2];
        const double detJ = Jacobian(dN, xy, n, J);
        const double scale = detJ * rho * point.weight;
        for (int i = 0; i < dofs; ++i)
            for (int j = 0; j < dofs; ++j)
                me[i][j] += scale * (N(0, i) * N(0, j) + N(1, i) * N(1, j));
    }
    for (int i = 0; i < dofs; ++i)
        for (int j = 0; j < dofs; ++j) out[i * dofs + j] = Complex(me[i][j], 0.0);
}

// Complex stiffness matrix, 2n x 2n: the sum over the points of w detJ B^T D B.
void ElementStiffness(const CElement& element, const std::vector<CNode>& nodes, Complex* out) {
    const int n = NodeCount(element);
    const int dofs = 2 * n;
    const ComplexMatrix& D = element.material->D;
    Complex d[4][4];
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) d[r][c] = D(r, c);
    Complex ke[kMaxDofs][kMaxDofs] = {};
    for (const CGauss& point : element.gaussPoints) {
        StrainRows b;
        const double detJ = RealStrainRows(element, point, nodes, n, b);
        const double s = point.weight * detJ;
        Complex t[kMaxDofs][4];  // B^T D, a plain transpose
        for (int i = 0; i < dofs; ++i)
            for (int k = 0; k < 4; ++k) {
                Complex sum = 0.0;
                for (int m = 0; m < 4; ++m) sum += b[m][i] * d[m][k];
                t[i][k] = sum;
            }
        for (int i = 0; i < dofs; ++i)
            for (int j = 0; j < dofs; ++j) {
                Complex sum = 0.0;
                for (int k = 0; k < 4; ++k) sum += t[i][k] * b[k][j];
                ke[i][j] += s * sum;
            }
    }
    for (int i = 0; i < dofs; ++i)
        for (int j = 0; j < dofs; ++j) out[i * dofs + j] = ke[i][j];
}

// The x share of one element in the load of unit horizontal acceleration: one value per node,
// rho N_j w detJ summed over the points.
void ElementInertia(const CElement& element, const std::vector<CNode>& nodes, double* out) {
    const int n = NodeCount(element);
    const double rho = element.Density();
    double xy[2 * kMaxNodes];
    FillNodeCoordinates(element, nodes, n, xy);
    for (int j = 0; j < n; ++j) out[j] = 0.0;
    for (const CGauss& point : element.gaussPoints) {
        const RealMatrix N = element.shapeFunction->GetNMatrix(point);
        const RealMatrix dN = element.shapeFunction->GetdNMatrix(point);
        double J[2][2];
        const double detJ = Jacobian(dN, xy, n, J);
        for (int j = 0; j < n; ++j) out[j] += rho * N(0, 2 * j) * (point.weight * detJ);
    }
}

// Forms per-element values in parallel, a block of elements at a time, and hands each block
// to merge(first, last, values, offsets) in element order. valueCount(n) is the number of
// values of an element of n nodes.
template <typename T, typename ValueCount, typename Form, typename Merge>
void ForElementBlocks(size_t elementCount, const std::vector<CElement>& elements,
                      ValueCount valueCount, Form form, Merge merge) {
    const size_t count = std::min(elementCount, elements.size());
    std::vector<size_t> offsets;
    std::vector<T> values;
    for (size_t first = 0; first < count; first += kBlockSize) {
        const size_t last = std::min(count, first + kBlockSize);
        offsets.assign(1, 0);
        for (size_t e = first; e < last; ++e)
            offsets.push_back(offsets.back() + valueCount(NodeCount(elements[e])));
        values.assign(offsets.back(), T{});
        const auto begin = static_cast<std::ptrdiff_t>(first);
        const auto end = static_cast<std::ptrdiff_t>(last);
#pragma omp parallel for schedule(guided, 1)
        for (std::ptrdiff_t e = begin; e < end; ++e)
            form(elements[e], values.data() + offsets[e - begin]);
        merge(first, last, values, offsets);
    }
}

size_t EquationCount(const std::vector<int32_t>& equationMap) {
    int32_t highest = -1;
    for (int32_t eq : equationMap) highest = std::max(highest, eq);
    return static_cast<size_t>(highest + 1);
}

// Clears the matrix and adds the element matrices into it, dropping terms of fixed degrees of
// freedom. The rows are shared out among threads, and each thread takes the elements in their
// order: every entry is summed exactly as a serial assembly sums it, whatever the thread count.
template <typename Form>
void AssembleMatrix(size_t elementCount, const std::vector<int32_t>& equationMap,
                    const std::vector<CElement>& elements, SparseComplexMatrix& matrix, Form form) {
    matrix.rows.clear();
    matrix.reset(EquationCount(equationMap));
    const auto squared = [](int n) { return static_cast<size_t>(4 * n * n); };
    const auto merge = [&](size_t first, size_t last, const std::vector<Complex>& values,
                           const std::vector<size_t>& offsets) {
        const int stripes = std::max(1, omp_get_max_threads());
#pragma omp parallel for schedule(guided, 1)
        for (int stripe = 0; stripe < stripes; ++stripe) {
            for (size_t e = first; e < last; ++e) {
                const CElement& element = elements[e];
                const int n = static_cast<int>(element.nodes.size());
                const int dofs = 2 * n;
                int32_t equation[kMaxDofs];
                for (int a = 0; a < n; ++a)
                    for (int ia = 0; ia < 2; ++ia)
                        equation[2 * a + ia] = equationMap[2 * element.nodes[a] + ia];
                const Complex* ee = values.data() + offsets[e - first];
                for (int a = 0; a < n; ++a)
                    for (int b = 0; b < n; ++b)
                        for (int ia = 0; ia < 2; ++ia) {
                            const int32_t row = equation[2 * a + ia];
                            if (row < 0 || row % stripes != stripe) continue;
                            for (int ib = 0; ib < 2; ++ib) {
                                const int32_t col = equation[2 * b + ib];
                                if (col >= 0)
                                    matrix.add(row, col, ee[(2 * a + ia) * dofs + 2 * b + ib]);
                            }
                        }
            }
        }
    };
    ForElementBlocks<Complex>(elementCount, elements, squared, form, merge);
}

// The transform of the strain histories of callers that run inside a parallel loop: one per
// thread, planned on first use for the length asked.
const FourierTransform& ThreadTransform(size_t length) {
    thread_local std::unique_ptr<FourierTransform> transform;
    if (!transform || transform->Length() != length)
        transform = std::make_unique<FourierTransform>(length);
    return *transform;
}

// Strain histories of one point. With shared set, the frequency lines and the three transforms
// are spread over the threads and the analysis' transform is used; otherwise all runs in the
// calling thread with a transform of its own.
void StrainHistory(const CElement& element, int g, const CAnalysisData& analysis,
                   StrainSeries& strainSeries, bool shared) {
    if (g < 0 || static_cast<size_t>(g) >= element.gaussPoints.size())
        StopRun(ExitStatus::kPointOutOfRange);
    const int n = NodeCount(element);
    StrainRows b;
    RealStrainRows(element, element.gaussPoints[g], analysis.nodes, n, b);

    const size_t length = analysis.waveSpectrum.size();
    // Lines beyond the half length would have no place apart from their mirror images.
    const size_t lines =
        std::min(static_cast<size_t>(std::max(analysis.frequencyCount, 0)), length / 2 + 1);
    constexpr int kRows[3] = {0, 1, 3};  // the z strain is zero and its slot is left alone
    Complex* series[3];
    for (int s = 0; s < 3; ++s) {
        ComplexVector& slot = strainSeries[kRows[s]];
        if (slot.size() == length)
            std::fill(slot.data.begin(), slot.data.end(), Complex(0.0, 0.0));
        else
            slot.resize(length);
        series[s] = slot.data.data();
    }
    const CNode* elementNodes[kMaxNodes];
    for (int j = 0; j < n; ++j) elementNodes[j] = &analysis.nodes[element.nodes[j]];
    const Complex* wave = analysis.waveSpectrum.data.data();
    const int dofs = 2 * n;

    const FourierTransform* transform = nullptr;
    if (length > 0) transform = shared ? analysis.transformHandle.get() : &ThreadTransform(length);

    // One team for both steps: the lines, then (after the loop's barrier) the transforms.
    const auto end = static_cast<std::ptrdiff_t>(lines);
#pragma omp parallel if (shared)
    {
#pragma omp for schedule(guided, 1)
        for (std::ptrdiff_t line = 0; line < end; ++line) {
            const auto i = static_cast<size_t>(line);
            Complex ue[kMaxDofs];
            for (int j = 0; j < n; ++j) {
                ue[2 * j] = elementNodes[j]->dispX[i];
                ue[2 * j + 1] = elementNodes[j]->dispY[i];
            }
            for (int s = 0; s < 3; ++s) {
                const double* row = b[kRows[s]];
                Complex strain = 0.0;
                for (int k = 0; k < dofs; ++k) strain += row[k] * ue[k];
                const Complex y = wave[i] * strain;
                series[s][i] = y;
                if (i != 0 && i != length / 2) series[s][length - i] = std::conj(y);
            }
        }
        if (transform) {
#pragma omp for schedule(guided, 1)
            for (int s = 0; s < 3; ++s) transform->Backward(series[s]);
        }
    }
}

}  // namespace

RealMatrix NodeCoordinateMatrix(const CElement& element, const std::vector<CNode>& nodes) {
    const int n = static_cast<int>(element.nodes.size());
    RealMatrix xy(static_cast<uint32_t>(n), 2);
    FillNodeCoordinates(element, nodes, n, xy.data.data());
    return xy;
}

double StrainMatrixAt(const CElement& element, const CGauss& point, const std::vector<CNode>& nodes,
                      ComplexMatrix& B) {
    const int n = NodeCount(element);
    StrainRows b;
    const double detJ = RealStrainRows(element, point, nodes, n, b);
    if (B.rows != 4 || B.cols != static_cast<uint32_t>(2 * n)) B = ComplexMatrix(4, 2 * n);
    for (int r = 0; r < 4; ++r)
        for (int k = 0; k < 2 * n; ++k) B(r, k) = Complex(b[r][k], 0.0);
    return detJ;
}

void AssembleInertiaLoad(size_t elementCount, const std::vector<CNode>& nodes,
                         const std::vector<CElement>& elements, ComplexVector& inertiaLoad) {
    // Two places per node, whether or not the caller sized the vector already.
    if (inertiaLoad.size() < 2 * nodes.size()) inertiaLoad.data.resize(2 * nodes.size());
    const auto perNode = [](int n) { return static_cast<size_t>(n); };
    const auto form = [&](const CElement& element, double* out) {
        ElementInertia(element, nodes, out);
    };
    const auto merge = [&](size_t first, size_t last, const std::vector<double>& values,
                           const std::vector<size_t>& offsets) {
        for (size_t e = first; e < last; ++e) {
            const double* fe = values.data() + offsets[e - first];
            const std::vector<int>& elementNodes = elements[e].nodes;
            for (size_t j = 0; j < elementNodes.size(); ++j)
                inertiaLoad[2 * static_cast<size_t>(elementNodes[j])] += Complex(-fe[j], +0.0);
        }
    };
    ForElementBlocks<double>(elementCount, elements, perNode, form, merge);
}

void AssembleMassMatrix(size_t elementCount, const std::vector<int32_t>& equationMap,
                        const std::vector<CNode>& nodes, const std::vector<CElement>& elements,
                        SparseComplexMatrix& massMatrix) {
    AssembleMatrix(
        elementCount, equationMap, elements, massMatrix,
        [&](const CElement& element, Complex* out) { ElementMass(element, nodes, out); });
}

void AssembleStiffnessMatrix(size_t elementCount, const std::vector<int32_t>& equationMap,
                             const std::vector<CNode>& nodes, const std::vector<CElement>& elements,
                             SparseComplexMatrix& stiffnessMatrix) {
    AssembleMatrix(
        elementCount, equationMap, elements, stiffnessMatrix,
        [&](const CElement& element, Complex* out) { ElementStiffness(element, nodes, out); });
}

void GaussStrainHistory(const CElement& element, int g, const CAnalysisData& analysis,
                        StrainSeries& strainSeries) {
    StrainHistory(element, g, analysis, strainSeries, true);
}

void GaussStrainHistoryPrivate(const CElement& element, int g, const CAnalysisData& analysis,
                               StrainSeries& strainSeries) {
    StrainHistory(element, g, analysis, strainSeries, false);
}
