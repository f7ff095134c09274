#include "solve/model_check.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "fem/element_matrices.hpp"

namespace {

std::string Num(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

std::string Number(size_t index) {
    return std::to_string(index + 1);
}

bool Finite(double value) {
    return std::isfinite(value);
}

using Faults = std::vector<ModelFault>;

// The analysis constants by their place; the second is read by nothing and not examined.
constexpr std::array<const char*, 7> kConstantNames = {
    "cut-off frequency",      nullptr,           "time step",         "convergence tolerance",
    "effective strain ratio", "iteration limit", "side boundary code"};
constexpr size_t kCutoff = 0;
constexpr size_t kTimeStep = 2;

void CheckConstants(const ModelSources& s, Faults& faults) {
    if (s.constants.size() < kConstantNames.size()) {
        faults.push_back({"", 0,
                          "the model has no analysis constants: the file list names no "
                          "constants file"});
        return;
    }
    for (size_t i = 0; i < kConstantNames.size(); ++i) {
        if (kConstantNames[i] == nullptr || Finite(s.constants[i])) continue;
        faults.push_back({s.constantsPath, ModelSources::LineOf(s.constantLines, i),
                          std::string("the ") + kConstantNames[i] + " is " + Num(s.constants[i]) +
                              ", not a finite number"});
    }
    // A cut-off of 0 or below leaves every frequency line unsolved.
    const double cutoff = s.constants[kCutoff];
    if (Finite(cutoff) && !(cutoff > 0.0)) {
        faults.push_back({s.constantsPath, ModelSources::LineOf(s.constantLines, kCutoff),
                          "the cut-off frequency " + Num(cutoff) + " Hz must be positive"});
    }
    const double step = s.constants[kTimeStep];
    if (Finite(step) && !(step > 0.0)) {
        faults.push_back({s.constantsPath, ModelSources::LineOf(s.constantLines, kTimeStep),
                          "the time step " + Num(step) + " s must be positive"});
    }
}

bool SpectrumFinite(const ComplexVector& spectrum) {
    for (size_t i = 0; i < spectrum.size(); ++i)
        if (!Finite(spectrum[i].real()) || !Finite(spectrum[i].imag())) return false;
    return true;
}

void CheckWave(const CAnalysisData& analysis, Faults& faults) {
    const ModelSources& s = analysis.sources;
    if (analysis.seismicWaves.empty()) {
        faults.push_back({"", 0, "the model has no wave: the file list names no wave file"});
        return;
    }
    bool finite = Finite(s.waveFactor);
    if (!finite) {
        faults.push_back({s.wavePath, s.waveHeaderLine,
                          "the amplitude factor of the header is " + Num(s.waveFactor) +
                              ", not a finite number"});
    }
    for (const WaveSample& sample : s.waveSamples) {
        if (Finite(sample.time) && Finite(sample.value)) continue;
        finite = false;
        faults.push_back({s.wavePath, sample.line,
                          "the sample at " + Num(sample.time) + " s of " + Num(sample.value) +
                              " gal is not finite"});
    }
    if (s.waveSamples.size() < 2) {
        faults.push_back({s.wavePath, s.waveHeaderLine,
                          "the wave gives " + std::to_string(s.waveSamples.size()) +
                              " samples, at least 2 are needed"});
        return;
    }
    if (!finite) return;
    // Finite samples whose product with the factor overflows.
    if (!SpectrumFinite(analysis.waveSpectrum)) {
        faults.push_back({s.wavePath, s.waveHeaderLine,
                          "the samples times the amplitude factor " + Num(s.waveFactor) +
                              " overflow: the wave's spectrum is not finite"});
    }
    // A cut-off below the first line above zero leaves nothing to solve.
    const double cutoff = s.constants.size() > kCutoff ? s.constants[kCutoff] : 0.0;
    if (analysis.frequencyCount < 2 && Finite(cutoff) && cutoff > 0.0) {
        const double padded = static_cast<double>(analysis.PaddedLength());
        faults.push_back({s.constantsPath, ModelSources::LineOf(s.constantLines, kCutoff),
                          "the cut-off frequency " + Num(cutoff) +
                              " Hz lies below the lowest frequency line, " +
                              Num(1.0 / (padded * analysis.timeStep)) + " Hz for the record of " +
                              Num(padded) + " samples: no line would be solved"});
    }
}

void CheckNodes(const CAnalysisData& analysis, Faults& faults) {
    const ModelSources& s = analysis.sources;
    for (size_t i = 0; i < analysis.nodes.size(); ++i) {
        const CNode& node = analysis.nodes[i];
        if (Finite(node.x) && Finite(node.y)) continue;
        faults.push_back({s.nodesPath, ModelSources::LineOf(s.nodeLines, i),
                          "node " + Number(i) + ": the coordinates (" + Num(node.x) + ", " +
                              Num(node.y) + ") are not finite"});
    }
}

// The faults of one material record, each at the line of its number. Returns whether there
// were none.
class MaterialCheck {
  public:
    MaterialCheck(const std::string& path, const MaterialRecordLines& lines, size_t index,
                  Faults& faults)
        : path_(path), lines_(lines), label_("material " + Number(index) + ": "), faults_(faults) {}

    void Fault(size_t place, const std::string& text) {
        faults_.push_back({path_, lines_.Line(place), label_ + text});
        clean_ = false;
    }
    // False, with a fault, when the value is not finite.
    bool IsFinite(size_t place, const std::string& name, double value) {
        if (Finite(value)) return true;
        Fault(place, "the " + name + " is " + Num(value) + ", not a finite number");
        return false;
    }
    void Positive(size_t place, const std::string& name, double value) {
        if (IsFinite(place, name, value) && !(value > 0.0))
            Fault(place, "the " + name + " " + Num(value) + " must be positive");
    }
    // A damping ratio: at least 0 and below 1, or the complex modulus is not defined.
    void DampingRatio(size_t place, const std::string& name, double value) {
        if (IsFinite(place, name, value) && !(value >= 0.0 && value < 1.0))
            Fault(place, "the " + name + " " + Num(value) + " must be at least 0 and below 1");
    }
    bool Clean() const { return clean_; }

  private:
    const std::string& path_;
    const MaterialRecordLines& lines_;
    std::string label_;
    Faults& faults_;
    bool clean_ = true;
};

// Places of the numbers in a record.
enum Place : size_t {
    kRho1 = 1,
    kRho2 = 2,
    kG0 = 4,
    kNu = 5,
    kDamping = 6,
    kPhi = 7,
    kCohesion = 8,
    kBeta1 = 9,
    kBeta2 = 10,
    kC1at0 = 11,
    kC1atInf = 12,
    kC2at0 = 13,
    kC2atInf = 14,
    kDampingExponent = 15,
    kMaxDamping = 16,
    kStrengthDivisor = 17,
    kTableRows = 7,
    kTableFirst = 8,
};

void CheckGhe(const DAT_GHEmodel& m, MaterialCheck& check) {
    const double phiDegrees = m.phi / std::numbers::pi * 180.0;
    const bool phiFinite = check.IsFinite(kPhi, "friction angle", phiDegrees);
    const bool cFinite = check.IsFinite(kCohesion, "cohesion", m.c);
    if (phiFinite && cFinite && m.phi == 0.0 && m.c == 0.0)
        check.Fault(kCohesion, "cohesion and friction angle are both 0: the soil has no strength");
    // The curve constants shape the modulus only off the plain hyperbola.
    if (!m.isHyperbolic) {
        check.IsFinite(kBeta1, "shape constant beta1", m.beta1);
        check.IsFinite(kBeta2, "shape constant beta2", m.beta2);
    }
    check.IsFinite(kC1at0, "C1 at zero strain", m.C1at0);
    check.IsFinite(kC1atInf, "C1 at infinite strain", m.C1atInf);
    check.IsFinite(kC2at0, "C2 at zero strain", m.C2at0);
    check.IsFinite(kC2atInf, "C2 at infinite strain", m.C2atInf);
    check.IsFinite(kDampingExponent, "damping exponent", m.hExponent);
    check.DampingRatio(kMaxDamping, "maximum damping ratio", m.hmax);
    if (check.IsFinite(kStrengthDivisor, "strength divisor", m.strengthDivisor) &&
        m.strengthDivisor == 0.0)
        check.Fault(kStrengthDivisor, "the strength divisor is 0");
}

void CheckTable(const DAT_Othermoel& m, MaterialCheck& check) {
    const size_t rows = m.strainTable.size();
    if (rows < 2 || m.gTable.size() != rows || m.hTable.size() != rows) {
        check.Fault(kTableRows,
                    "the table has " + std::to_string(rows) + " rows, at least 2 are needed");
        return;
    }
    for (size_t j = 0; j < rows; ++j) {
        const std::string row = " of row " + Number(j);
        const double strain = m.strainTable[j];
        if (check.IsFinite(kTableFirst + j, "strain" + row, strain)) {
            if (!(strain > 0.0)) {
                check.Fault(kTableFirst + j,
                            "the strain" + row + ", " + Num(strain) + ", must be positive");
            } else if (j > 0 && !(strain > m.strainTable[j - 1])) {
                check.Fault(kTableFirst + j, "the strains must increase from row to row: row " +
                                                 Number(j) + " gives " + Num(strain) + " after " +
                                                 Num(m.strainTable[j - 1]));
            }
        }
        const double ratio = m.gTable[j];
        if (check.IsFinite(kTableFirst + rows + j, "G/G0" + row, ratio) &&
            !(ratio > 0.0 && ratio <= 1.0)) {
            check.Fault(kTableFirst + rows + j,
                        "G/G0" + row + ", " + Num(ratio) + ", must lie above 0 and not above 1");
        }
        const double percent = m.hTable[j] * 100.0;
        if (check.IsFinite(kTableFirst + 2 * rows + j, "damping" + row, percent) &&
            !(m.hTable[j] >= 0.0 && m.hTable[j] < 1.0)) {
            check.Fault(kTableFirst + 2 * rows + j, "the damping" + row + ", " + Num(percent) +
                                                        " %, must be at least 0 and below 100 %");
        }
    }
}

// Checks every material that an element uses; gives, by material index, whether it is sound.
std::vector<bool> CheckMaterials(const CAnalysisData& analysis, Faults& faults) {
    const ModelSources& s = analysis.sources;
    std::vector<bool> used(analysis.materials.size(), false);
    for (int index : s.elementMaterials)
        if (index >= 0 && static_cast<size_t>(index) < used.size()) used[index] = true;
    std::vector<bool> sound(analysis.materials.size(), true);
    const MaterialRecordLines none;
    for (size_t i = 0; i < analysis.materials.size(); ++i) {
        if (!used[i]) continue;
        const DAT_Material& m = *analysis.materials[i];
        MaterialCheck check(s.materialsPath, i < s.materialLines.size() ? s.materialLines[i] : none,
                            i, faults);
        check.Positive(kRho1, "first density", m.rho1);
        check.Positive(kRho2, "second density", m.rho2);
        check.Positive(kG0, "initial shear modulus G0", m.G0);
        if (check.IsFinite(kNu, "Poisson's ratio", m.nu) && !(m.nu > -1.0 && m.nu < 0.5))
            check.Fault(kNu, "Poisson's ratio " + Num(m.nu) + " must lie above -1 and below 0.5");
        check.DampingRatio(kDamping, "damping ratio", m.h);
        if (m.type == MaterialModel::kHyperbolic) {
            if (const auto* ghe = dynamic_cast<const DAT_GHEmodel*>(&m)) CheckGhe(*ghe, check);
        } else if (m.type != MaterialModel::kElastic) {
            if (const auto* table = dynamic_cast<const DAT_Othermoel*>(&m))
                CheckTable(*table, check);
        }
        sound[i] = check.Clean();
    }
    return sound;
}

// Corners of the element kinds in natural coordinates, in node order.
constexpr std::array<std::array<double, 2>, 4> kQuadCorners = {
    {{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}}};
constexpr std::array<std::array<double, 2>, 3> kTriangleCorners = {
    {{1.0, 0.0}, {0.0, 1.0}, {0.0, 0.0}}};

// Below this share of the square of the element's extent, a Jacobian or an area counts as 0.
constexpr double kVanishing = 1e-10;

// The fault of one element's shape, empty when it has none; sets orientation to +1 (nodes
// counter-clockwise) or -1 (clockwise) when the element is sound.
std::string ShapeFault(const CElement& element, const std::vector<CNode>& nodes, int& orientation) {
    const std::vector<int>& ids = element.nodes;
    for (size_t a = 0; a < ids.size(); ++a)
        for (size_t b = a + 1; b < ids.size(); ++b) {
            if (ids[a] == ids[b])
                return "node " + Number(ids[a]) + " appears twice among its nodes";
            const CNode& p = nodes[ids[a]];
            const CNode& q = nodes[ids[b]];
            if (p.x == q.x && p.y == q.y) {
                return "its nodes " + Number(ids[a]) + " and " + Number(ids[b]) +
                       " lie at the same point (" + Num(p.x) + ", " + Num(p.y) + ")";
            }
        }

    double xMin = INFINITY, xMax = -INFINITY, yMin = INFINITY, yMax = -INFINITY;
    for (int id : ids) {
        xMin = std::min(xMin, nodes[id].x), xMax = std::max(xMax, nodes[id].x);
        yMin = std::min(yMin, nodes[id].y), yMax = std::max(yMax, nodes[id].y);
    }
    const double vanishing =
        kVanishing * ((xMax - xMin) * (xMax - xMin) + (yMax - yMin) * (yMax - yMin));

    double area = 0.0;
    for (const CGauss& point : element.gaussPoints)
        area += point.weight * JacobianDeterminantAt(element, point, nodes);
    if (!(std::fabs(area) > vanishing))
        return "it has no area: its corners lie on one line or its sides cross";
    const double sign = area > 0.0 ? 1.0 : -1.0;

    std::vector<std::array<double, 2>> corners;
    if (ids.size() == 6)
        corners.assign(kTriangleCorners.begin(), kTriangleCorners.end());
    else
        corners.assign(kQuadCorners.begin(), kQuadCorners.end());
    const size_t n = corners.size();
    for (size_t k = 0; k < n; ++k) {
        const double detJ =
            JacobianDeterminantAt(element, CPoint(corners[k][0], corners[k][1], 0.0), nodes);
        if (std::fabs(detJ) <= vanishing) {
            return "its corner nodes " + Number(ids[(k + n - 1) % n]) + ", " + Number(ids[k]) +
                   " and " + Number(ids[(k + 1) % n]) + " lie on one line";
        }
        if (sign * detJ < 0.0) {
            return "it is crossed or re-entrant at its corner node " + Number(ids[k]) +
                   ": the Jacobian changes sign within it";
        }
    }
    for (size_t g = 0; g < element.gaussPoints.size(); ++g) {
        const double detJ = JacobianDeterminantAt(element, element.gaussPoints[g], nodes);
        if (!(sign * detJ > vanishing)) {
            return "the Jacobian changes sign or vanishes at its integration point " + Number(g) +
                   ": a mid-side node lies out of place";
        }
    }
    orientation = area > 0.0 ? 1 : -1;
    return "";
}

void CheckElements(const CAnalysisData& analysis, Faults& faults) {
    const ModelSources& s = analysis.sources;
    if (analysis.elements.empty()) {
        if (s.elementsPath.empty())
            faults.push_back(
                {"", 0, "the model has no element: the file list names no element file"});
        else
            faults.push_back({s.elementsPath, 0, "the file gives no element"});
        return;
    }
    std::vector<int> orientation(analysis.elements.size(), 0);
    for (size_t e = 0; e < analysis.elements.size(); ++e) {
        const CElement& element = analysis.elements[e];
        // Nodes that are not finite have their own faults.
        const bool placed = std::all_of(element.nodes.begin(), element.nodes.end(), [&](int id) {
            return Finite(analysis.nodes[id].x) && Finite(analysis.nodes[id].y);
        });
        if (!placed) continue;
        const std::string fault = ShapeFault(element, analysis.nodes, orientation[e]);
        if (!fault.empty()) {
            faults.push_back({s.elementsPath, ModelSources::LineOf(s.elementLines, e),
                              "element " + Number(e) + ": " + fault});
        }
    }
    // One orientation for the whole mesh: that of most of its elements, counter-clockwise on a
    // tie. An element against it would enter the matrices with the opposite sign.
    const auto clockwise = std::count(orientation.begin(), orientation.end(), -1);
    const auto counter = std::count(orientation.begin(), orientation.end(), 1);
    const int mesh = counter >= clockwise ? 1 : -1;
    for (size_t e = 0; e < orientation.size(); ++e) {
        if (orientation[e] != -mesh) continue;
        faults.push_back({s.elementsPath, ModelSources::LineOf(s.elementLines, e),
                          "element " + Number(e) +
                              (mesh == 1 ? ": its nodes run clockwise, those of the rest of the "
                                           "mesh counter-clockwise"
                                         : ": its nodes run counter-clockwise, those of the rest "
                                           "of the mesh clockwise")});
    }
}

void CheckBoundaries(const CAnalysisData& analysis, Faults& faults) {
    const ModelSources& s = analysis.sources;
    const size_t fromFile = std::min(s.boundaryLines.size(), analysis.boundaryConds.size());
    for (size_t i = 0; i < fromFile; ++i) {
        const auto* visco = dynamic_cast<const CBCVisco*>(analysis.boundaryConds[i].get());
        if (visco == nullptr) continue;
        // The terms of the edge nodes enter the matrices; the first and the coefficient alone
        // do not.
        bool finite = true;
        for (const Complex& v : {visco->term2, visco->term3, visco->term4}) {
            if (&v == &visco->term4 && visco->edgeNode3 == -1) continue;
            finite = finite && Finite(v.real()) && Finite(v.imag());
        }
        if (finite) continue;
        faults.push_back({s.boundaryPath, s.boundaryLines[i],
                          "the dashpot of node " + Number(visco->node) +
                              ": its coefficient or factors are not finite"});
    }
}

void CheckSelfWeight(const CAnalysisData& analysis, const std::vector<bool>& soundMaterials,
                     Faults& faults) {
    const ModelSources& s = analysis.sources;
    size_t point = 0;
    for (size_t e = 0; e < analysis.elements.size(); ++e) {
        const CElement& element = analysis.elements[e];
        bool finite = true;
        for (size_t g = 0; g < element.gaussPoints.size(); ++g, ++point) {
            const RealVector& stress = element.gaussPoints[g].stress;
            bool pointFinite = true;
            for (size_t c = 0; c < stress.size(); ++c)
                pointFinite = pointFinite && Finite(stress[c]);
            if (pointFinite) continue;
            finite = false;
            faults.push_back({s.selfWeightPath, ModelSources::LineOf(s.selfWeightLines, point),
                              "the stresses of element " + Number(e) + ", integration point " +
                                  Number(g) + ", are not finite"});
        }
        // The strength of a GHE soil comes from its material and the stresses; a sound
        // material can still give none, under a negative cohesion for one.
        const int index = e < s.elementMaterials.size() ? s.elementMaterials[e] : -1;
        const auto* ghe = element.material->type == MaterialModel::kHyperbolic
                              ? dynamic_cast<const DAT_GHEmodel*>(element.material.get())
                              : nullptr;
        if (ghe == nullptr || !finite || index < 0 ||
            static_cast<size_t>(index) >= soundMaterials.size() || !soundMaterials[index])
            continue;
        if (Finite(ghe->tauf) && ghe->tauf > 0.0) continue;
        faults.push_back({s.selfWeightPath, ModelSources::LineOf(s.selfWeightLines, point - 1),
                          "element " + Number(e) + ": the shear strength of material " +
                              Number(static_cast<size_t>(index)) + " under these stresses is " +
                              Num(ghe->tauf) + ", it must be positive"});
    }
}

}  // namespace

std::string ModelFault::Message() const {
    if (path.empty()) return text;
    if (line <= 0) return path + ": " + text;
    return path + ":" + std::to_string(line) + ": " + text;
}

std::vector<ModelFault> CheckModel(const CAnalysisData& analysis) {
    Faults faults;
    CheckConstants(analysis.sources, faults);
    CheckWave(analysis, faults);
    CheckNodes(analysis, faults);
    const std::vector<bool> soundMaterials = CheckMaterials(analysis, faults);
    CheckElements(analysis, faults);
    CheckBoundaries(analysis, faults);
    CheckSelfWeight(analysis, soundMaterials, faults);
    return faults;
}

std::vector<std::string> FaultMessages(const std::vector<ModelFault>& faults) {
    std::vector<std::string> messages;
    messages.reserve(faults.size());
    for (const ModelFault& fault : faults) messages.push_back(fault.Message());
    return messages;
}
