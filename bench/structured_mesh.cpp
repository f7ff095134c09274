#include "structured_mesh.hpp"

#include <boost/make_shared.hpp>
#include <cmath>

#include "element/constant_operators.hpp"
#include "element/gauss_rule.hpp"
#include "element/shape_function.hpp"

namespace {

bool Quadratic(const SectionGrid& grid) {
    return grid.nodesPerElement != 4;
}

// Serendipity elements have no node at the centre of a cell.
bool HasNode(const SectionGrid& grid, int i, int j) {
    return !(grid.nodesPerElement == 8 && i % 2 == 1 && j % 2 == 1);
}

int GridColumns(const SectionGrid& grid) {
    return Quadratic(grid) ? 2 * grid.columns + 1 : grid.columns + 1;
}

int GridRows(const SectionGrid& grid) {
    return Quadratic(grid) ? 2 * grid.layers + 1 : grid.layers + 1;
}

CElement MakeElement(const boost::shared_ptr<DAT_ShapeFunction>& shape,
                     const boost::shared_ptr<DefaultGauss>& rule,
                     const boost::shared_ptr<DAT_Material>& material, std::vector<int> nodes) {
    CElement e;
    e.nodes = std::move(nodes);
    e.shapeFunction = shape;
    e.gaussRule = rule;
    e.gaussPoints = rule->points;
    e.gaussCount = rule->count;
    e.ruleCount = rule->count;
    e.material = material;
    e.usesFirstDensity = true;
    return e;
}

}  // namespace

boost::shared_ptr<DAT_Material> ElasticMaterial(double G, double h, double nu, double rho) {
    BuildConstantOperators();
    auto m = boost::make_shared<DAT_Elastic>();
    m->type = MaterialModel::kElastic;
    m->rho1 = m->rho2 = rho;
    m->G0 = m->G = G;
    m->h = h;
    m->nu = nu;
    m->UpdateModuli();
    return m;
}

int StructuredNode(const SectionGrid& grid, int i, int j) {
    const int columns = GridColumns(grid);
    if (grid.nodesPerElement != 8) return j * columns + i;
    // Rows alternate between full rows and rows of cell sides only.
    const int fullRows = (j + 1) / 2, sideRows = j / 2;
    const int before = fullRows * columns + sideRows * (grid.columns + 1);
    return before + (j % 2 == 0 ? i : i / 2);
}

void BuildStructuredMesh(const SectionGrid& grid, const boost::shared_ptr<DAT_Material>& material,
                         CAnalysisData& analysis) {
    const int columns = GridColumns(grid), rows = GridRows(grid);
    const double dx = grid.width / (columns - 1), dy = grid.depth / (rows - 1);
    analysis.nodes.clear();
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i)
            if (HasNode(grid, i, j)) analysis.nodes.emplace_back(i * dx, j * dy, 0.0);

    const int n = grid.nodesPerElement;
    boost::shared_ptr<DAT_ShapeFunction> shape;
    if (n == 4) shape = boost::make_shared<IsoParametricQuadSquare>();
    if (n == 8) shape = boost::make_shared<IsoParametricSecondSquare>();
    if (n == 6) shape = boost::make_shared<ShapeFuncOfSecondTriangle>();
    const auto rule = boost::make_shared<DefaultGauss>(n == 4 ? 2 : n == 8 ? 3 : 7, n);
    auto node = [&](int i, int j) { return StructuredNode(grid, i, j); };

    analysis.elements.clear();
    for (int b = 0; b < grid.layers; ++b) {
        for (int a = 0; a < grid.columns; ++a) {
            if (n == 4) {
                analysis.elements.push_back(
                    MakeElement(shape, rule, material,
                                {node(a, b), node(a + 1, b), node(a + 1, b + 1), node(a, b + 1)}));
                continue;
            }
            const int i = 2 * a, j = 2 * b;
            if (n == 8) {
                analysis.elements.push_back(MakeElement(
                    shape, rule, material,
                    {node(i, j), node(i + 2, j), node(i + 2, j + 2), node(i, j + 2), node(i + 1, j),
                     node(i + 2, j + 1), node(i + 1, j + 2), node(i, j + 1)}));
                continue;
            }
            // Two triangles along the rising diagonal, corners counter-clockwise, then the
            // middles of sides 2-3, 3-1 and 1-2.
            analysis.elements.push_back(
                MakeElement(shape, rule, material,
                            {node(i, j), node(i + 2, j), node(i + 2, j + 2), node(i + 2, j + 1),
                             node(i + 1, j + 1), node(i + 1, j)}));
            analysis.elements.push_back(
                MakeElement(shape, rule, material,
                            {node(i, j), node(i + 2, j + 2), node(i, j + 2), node(i + 1, j + 2),
                             node(i, j + 1), node(i + 1, j + 1)}));
        }
    }

    const size_t dofs = 2 * analysis.nodes.size();
    analysis.dofFixed.assign(dofs, 0);
    for (size_t p = 0; p < analysis.nodes.size(); ++p) {
        if (analysis.nodes[p].y == 0.0) analysis.dofFixed[2 * p] = 1;
        if (analysis.nodes[p].y == 0.0 || grid.fixVertical) analysis.dofFixed[2 * p + 1] = 1;
    }
    analysis.equationMap.assign(dofs, -1);
    int32_t next = 0;
    for (size_t d = 0; d < dofs; ++d)
        if (analysis.dofFixed[d] == 0) analysis.equationMap[d] = next++;
    analysis.freeDofCount = next;
}

SectionGrid SectionWithEquations(int nodesPerElement, int equations) {
    // Nodes per cell: 1 for 4-node cells, 3 for 8-node cells, 4 for pairs of 6-node triangles;
    // two equations per node; four cells across for each cell down.
    const double perCell = nodesPerElement == 4 ? 1.0 : nodesPerElement == 8 ? 3.0 : 4.0;
    const double cells = equations / (2.0 * perCell);
    SectionGrid grid;
    grid.nodesPerElement = nodesPerElement;
    grid.layers = std::max(1, static_cast<int>(std::lround(std::sqrt(cells / 4.0))));
    grid.columns = 4 * grid.layers;
    grid.depth = 2.0 * grid.layers;
    grid.width = 2.0 * grid.columns;
    return grid;
}
