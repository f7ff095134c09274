#include "response/synthesis_model.hpp"

#include <cstring>
#include <fstream>
#include <iterator>

#include "element/gauss_rule.hpp"
#include "element/shape_function.hpp"

namespace fs = std::filesystem;

WorkingDirectory::WorkingDirectory(const fs::path& folder) : previous_(fs::current_path()) {
    fs::current_path(folder);
}

WorkingDirectory::~WorkingDirectory() {
    std::error_code ec;
    fs::current_path(previous_, ec);
}

void SetWave(CAnalysisData& analysis, const std::vector<double>& samples, size_t P, double dt,
             int frequencyCount) {
    CSeismicWave wave;
    wave.timeStep = dt;
    wave.sampleCount = static_cast<int>(samples.size());
    wave.acc = samples;
    wave.acc.resize(P, 0.0);
    analysis.seismicWaves.assign(1, wave);
    analysis.timeStep = dt;
    analysis.frequencyCount = frequencyCount;
    analysis.transformHandle = std::make_unique<FourierTransform>(P);
    analysis.waveSpectrum = ComplexVector(P);
    for (size_t i = 0; i < P; ++i) analysis.waveSpectrum[i] = wave.acc[i];
    analysis.transformHandle->Forward(analysis.waveSpectrum.begin_ptr());
}

int AddNode(CAnalysisData& analysis, double x, double y) {
    CNode node(x, y, 0.0);
    const size_t lines = analysis.PaddedLength() / 2 + 1;
    node.dispX = ComplexVector(lines);
    node.dispY = ComplexVector(lines);
    analysis.nodes.push_back(node);
    return static_cast<int>(analysis.nodes.size()) - 1;
}

void AddElement(CAnalysisData& analysis, const std::vector<int>& nodes,
                const boost::shared_ptr<DAT_Material>& material) {
    CElement element;
    const int n = static_cast<int>(nodes.size());
    if (n == 4) element.shapeFunction.reset(new IsoParametricQuadSquare());
    if (n == 6) element.shapeFunction.reset(new ShapeFuncOfSecondTriangle());
    if (n == 8) element.shapeFunction.reset(new IsoParametricSecondSquare());
    element.gaussRule.reset(new DefaultGauss(n == 6 ? 7 : (n == 8 ? 3 : 2), n));
    element.gaussPoints = element.gaussRule->points;
    element.gaussCount = static_cast<int>(element.gaussPoints.size());
    element.ruleCount = element.gaussRule->count;
    element.nodes = nodes;
    element.material = material;
    element.usesFirstDensity = true;
    analysis.elements.push_back(element);
}

boost::shared_ptr<DAT_Material> ElasticMaterial(Complex G, double nu) {
    boost::shared_ptr<DAT_Material> material(new DAT_Elastic());
    const Complex L = 2.0 * G * nu / (1.0 - 2.0 * nu);
    ComplexMatrix& D = material->D;
    D = ComplexMatrix(4, 4);
    for (uint32_t i = 0; i < 3; ++i)
        for (uint32_t j = 0; j < 3; ++j) D(i, j) = i == j ? L + 2.0 * G : L;
    D(3, 3) = G;
    return material;
}

void AddStrip(CAnalysisData& analysis, const std::vector<int>& nodeCounts,
              const boost::shared_ptr<DAT_Material>& material) {
    double x0 = 0.0;
    for (int n : nodeCounts) {
        // Local node positions in the unit cell, in the orders of the shape functions.
        std::vector<std::pair<double, double>> at;
        if (n == 4) at = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        if (n == 8) at = {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0.5, 0}, {1, 0.5}, {0.5, 1}, {0, 0.5}};
        if (n == 6) at = {{1, 0}, {0, 1}, {0, 0}, {0, 0.5}, {0.5, 0}, {0.5, 0.5}};
        std::vector<int> nodes;
        for (const auto& [x, y] : at) nodes.push_back(AddNode(analysis, x0 + x, y));
        AddElement(analysis, nodes, material);
        x0 += 1.0;
    }
}

namespace {
template <typename T>
std::vector<T> ReadValues(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::vector<T> values(bytes.size() / sizeof(T));
    // The test hosts are little-endian, as the files are.
    std::memcpy(values.data(), bytes.data(), values.size() * sizeof(T));
    return values;
}
}  // namespace

std::vector<double> ReadF64(const std::string& path) {
    return ReadValues<double>(path);
}
std::vector<float> ReadF32(const std::string& path) {
    return ReadValues<float>(path);
}
