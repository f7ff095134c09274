#include "results/result_model_fixture.hpp"

#include <boost/make_shared.hpp>
#include <sstream>

#include "element/gauss_rule.hpp"
#include "element/shape_function.hpp"

namespace fs = std::filesystem;

ScratchWorkingDirectory::ScratchWorkingDirectory() : previous_(fs::current_path()) {
    fs::current_path(folder_.Root());
}

ScratchWorkingDirectory::~ScratchWorkingDirectory() {
    fs::current_path(previous_);
}

CAnalysisData SmallModel(int columns, int steps) {
    CAnalysisData model;
    int padded = 1;
    while (padded < steps) padded *= 2;
    for (int row = 0; row < 2; ++row)
        for (int i = 0; i <= columns; ++i) {
            CNode node(1.0 * i, row - 1.0, 0.0);
            node.dispX = ComplexVector(padded);
            node.dispY = ComplexVector(padded);
            model.nodes.push_back(node);
        }
    auto material = boost::make_shared<DAT_Elastic>();
    material->type = 5;
    material->G0 = 50.0;
    material->G = 40.0;
    material->rho1 = material->rho2 = 0.0018;
    model.materials.push_back(material);
    for (int e = 0; e < columns; ++e) {
        CElement element;
        element.nodes = {e, e + 1, columns + 2 + e, columns + 1 + e};
        element.gaussRule = boost::make_shared<DefaultGauss>(2, 4);
        element.gaussPoints = element.gaussRule->points;
        element.gaussCount = static_cast<int>(element.gaussPoints.size());
        element.ruleCount = element.gaussRule->count;
        element.shapeFunction = boost::make_shared<IsoParametricQuadSquare>();
        element.material = material;
        model.elements.push_back(element);
    }
    CSeismicWave wave;
    wave.timeStep = 0.01;
    wave.sampleCount = steps;
    wave.acc.assign(padded, 0.0);
    model.seismicWaves.push_back(wave);
    model.timeStep = 0.01;
    model.frequencyCount = padded / 2;
    model.waveSpectrum = ComplexVector(padded);
    model.transformHandle = std::make_unique<FourierTransform>(padded);
    model.tolerance = 0.05;
    model.iterationLimit = 10;
    return model;
}

std::vector<float> Records(int elements, int points, int steps, const RecordCode& code) {
    std::vector<float> values;
    for (int e = 0; e < elements; ++e)
        for (int g = 0; g < points; ++g)
            for (int t = 0; t < steps; ++t)
                for (int i = 0; i < 6; ++i) values.push_back(code(e, g, t, i));
    return values;
}

float DistinctCode(int element, int point, int step, int i) {
    return static_cast<float>(1000 * element + 100 * point + 10 * step + i);
}

std::string TextWrittenBy(const std::function<void(std::FILE*)>& writer) {
    std::FILE* file = std::tmpfile();
    writer(file);
    std::fflush(file);
    std::rewind(file);
    std::string text;
    for (int c; (c = std::fgetc(file)) != EOF;) text.push_back(static_cast<char>(c));
    std::fclose(file);
    return text;
}

std::string LineStartingWith(const std::string& text, const std::string& prefix) {
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (line.rfind(prefix, 0) == 0) return line;
    return {};
}

std::vector<std::string> BlockLines(const std::string& text, const std::string& banner) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    bool inside = false;
    for (std::string line; std::getline(in, line);) {
        if (inside && line.rfind("----", 0) == 0) break;
        if (inside) lines.push_back(line);
        if (line == banner) inside = true;
    }
    return lines;
}

std::map<int, int> LinesPerElement(const std::vector<std::string>& lines) {
    std::map<int, int> counts;
    for (const std::string& line : lines) ++counts[std::stoi(line)];
    return counts;
}
