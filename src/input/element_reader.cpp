// The element file: "material nodeCount densitySelector node1 node2 ..." a line. Each element
// is bound on reading to its material, its shape functions and its integration rule.
#include <boost/make_shared.hpp>
#include <cstdio>
#include <string>

#include "input/line_reader.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"

namespace {

// The three element kinds: node count, line format, and the argument of the rule.
struct ElementKind {
    int nodeCount;
    const char* format;
    int ruleArgument;
};
constexpr ElementKind kKinds[] = {
    {4, "%d %d %d %d %d %d %d", 2},              // quadrilateral, 2 x 2 points
    {6, "%d %d %d %d %d %d %d %d %d", 7},        // triangle, 7 points
    {8, "%d %d %d %d %d %d %d %d %d %d %d", 3},  // quadrilateral, 3 x 3 points
};
constexpr int kMostFields = 11;

const ElementKind* KindOf(int nodeCount) {
    for (const ElementKind& kind : kKinds)
        if (kind.nodeCount == nodeCount) return &kind;
    return nullptr;
}

boost::shared_ptr<DAT_ShapeFunction> MakeShapeFunction(int nodeCount) {
    switch (nodeCount) {
        case 4:
            return boost::make_shared<IsoParametricQuadSquare>(nodeCount);
        case 6:
            return boost::make_shared<ShapeFuncOfSecondTriangle>(nodeCount);
        default:
            return boost::make_shared<IsoParametricSecondSquare>(nodeCount);
    }
}

}  // namespace

void ReadElements(CAnalysisData& analysis, const std::string& elementPath,
                  const std::string& materialPath) {
    analysis.sources.materialsPath = materialPath;
    analysis.sources.elementsPath = elementPath;
    ReadMaterials(analysis.materials, materialPath, &analysis.sources.materialLines);
    const int materialCount = static_cast<int>(analysis.materials.size());
    const int nodeCount = static_cast<int>(analysis.nodes.size());

    ReadDataLines(elementPath, "ElemData:Reading error", [&](const std::string& line, int number) {
        auto stop = [&](const std::string& fault) { StopOnBadInput(elementPath, number, fault); };
        int material = 0;
        int count = -1;
        int selector = -1;
        const int scanned = std::sscanf(line.c_str(), "%d %d %d", &material, &count, &selector);
        if (scanned < 1) stop("an element line needs a material index and a node count");
        if (material > materialCount) StopOnUnreadableInput("ERROR:MaterialDat");
        if (count < 0) stop("the element line gives no node count");
        const ElementKind* kind = KindOf(count);
        if (kind == nullptr) return;  // no element of this many nodes: the line is passed over
        if (material < 0 || material >= materialCount) {
            stop("material " + std::to_string(material) + " is not in the material list of " +
                 std::to_string(materialCount));
        }

        // Fields missing from a short line leave their nodes at 0.
        int v[kMostFields] = {};
        std::sscanf(line.c_str(), kind->format, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6],
                    &v[7], &v[8], &v[9], &v[10]);
        CElement element;
        element.nodes.assign(v + 3, v + 3 + count);
        for (int node : element.nodes) {
            if (node < 0 || node >= nodeCount) {
                stop("node " + std::to_string(node) + " is not in the node list of " +
                     std::to_string(nodeCount));
            }
        }
        element.shapeFunction = MakeShapeFunction(count);
        element.gaussRule = boost::make_shared<DefaultGauss>(kind->ruleArgument, count);
        element.material = analysis.materials[static_cast<size_t>(material)];
        element.gaussCount = static_cast<int>(element.gaussRule->points.size());
        element.ruleCount = element.gaussRule->count;
        element.gaussPoints = element.gaussRule->points;
        element.usesFirstDensity = selector == 1;
        analysis.elements.push_back(std::move(element));
        analysis.sources.elementLines.push_back(number);
        analysis.sources.elementMaterials.push_back(material);
    });
}
