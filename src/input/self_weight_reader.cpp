// The initial stresses from the self-weight analysis ("output0.inp"): the block behind the
// line "---- stress ----", one line for each integration point in element order, in tf/m2.
// They become the points' initial stresses and, for GHE materials, the shear strength.
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "input/line_reader.hpp"
#include "input/model_readers.hpp"
#include "model/analysis_data.hpp"
#include "model/self_weight_stress.hpp"

namespace {
constexpr const char* kStressMarker = "---- stress ----";
constexpr const char* kBlockBanner = "----";  // the head of every block of a result model
constexpr double kGravity = 9.80665;          // tf/m2 to kN/m2
constexpr double kTensileConfinementFloor = 0.010132500000000001;
}  // namespace

double GheStrength(const DAT_GHEmodel& material, double sx, double sy, double sxy) {
    const double a = -sx;
    const double b = -sy;
    const double t = -sxy;
    const double r = std::sqrt(std::pow(a - b, 2.0) + 4.0 * t * t);
    const double s1 = ((a + b) + r) * 0.5;
    const double s3 = ((a + b) - r) * 0.5;
    const double mean = (s1 + s3) * 0.5;
    const double p = mean - std::sin(material.phi) * ((s1 - s3) * 0.5);
    const double q =
        p < 0.0 ? std::tan(material.phi) * kTensileConfinementFloor : std::tan(material.phi) * p;
    return (q + material.c) / material.strengthDivisor;
}

void ReadSelfWeightStress(CAnalysisData& analysis, const std::string& path) {
    // The stress block: the lines behind the marker line, with no comment rule, up to the banner
    // of the next block or the end of the file.
    std::vector<std::string> block;
    std::vector<int> blockLines;
    bool marked = false;
    bool inBlock = false;
    int lastLine = 0;
    const bool opened = ReadAllLines(path, [&](const std::string& line, int number) {
        lastLine = number;
        if (inBlock && line.rfind(kBlockBanner, 0) == 0) inBlock = false;
        if (inBlock) {
            block.push_back(line);
            blockLines.push_back(number);
        } else if (!marked && line == kStressMarker) {
            marked = inBlock = true;
        }
    });
    if (!opened) StopOnUnreadableInput("自重解析:Reading error");

    // Every integration point takes a line of its own: a block cut short would leave the points
    // behind it with the stresses of another point.
    size_t pointCount = 0;
    for (const CElement& element : analysis.elements) pointCount += element.gaussPoints.size();
    const std::string expected =
        std::to_string(pointCount) + " expected, one for each integration point of the mesh";
    if (pointCount > 0 && !marked) {
        StopOnBadInput(
            path, lastLine,
            std::string("no line \"") + kStressMarker + "\": 0 stress lines, " + expected);
    }
    if (block.size() < pointCount) {
        StopOnBadInput(
            path, blockLines.empty() ? lastLine : blockLines.back(),
            "the stress block has " + std::to_string(block.size()) + " lines, " + expected);
    }
    analysis.sources.selfWeightPath = path;
    analysis.sources.selfWeightLines.assign(
        blockLines.begin(), blockLines.begin() + static_cast<std::ptrdiff_t>(pointCount));

    // Order alone ties a line to its point. A line that does not scan keeps the values of the
    // line before.
    int pointNumber = 0;
    double s[6] = {};
    size_t next = 0;
    for (CElement& element : analysis.elements) {
        auto* ghe = element.material->type == MaterialModel::kHyperbolic
                        ? dynamic_cast<DAT_GHEmodel*>(element.material.get())
                        : nullptr;
        for (CGauss& point : element.gaussPoints) {
            std::sscanf(block[next].c_str(), "%d %lf %lf %lf %lf %lf %lf", &pointNumber, &s[0],
                        &s[1], &s[2], &s[3], &s[4], &s[5]);
            ++next;
            for (int i = 0; i < 4; ++i) point.stress[i] = s[i] * kGravity / 1000.0;
            // One strength for the material object: the element's last point decides it.
            if (ghe != nullptr)
                ghe->tauf = GheStrength(*ghe, point.stress[0], point.stress[1], point.stress[3]);
        }
    }
}
