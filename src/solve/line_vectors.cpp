#include "solve/line_vectors.hpp"

#include <cstdio>

namespace {
constexpr double kTwoPi = 6.283185307179586;
}  // namespace

double LineFrequency(int line, double duration) {
    return (1.0 / duration) * line;
}

double LineCircularFrequency(int line, double duration) {
    return (kTwoPi / duration) * line;
}

size_t FreeDofCount(const std::vector<int32_t>& dofFixed) {
    size_t count = 0;
    for (int32_t fixed : dofFixed) count += fixed == 0;
    return count;
}

void PackRightHandSide(const ComplexVector& inertiaLoad, const Complex* boundaryLoad,
                       const std::vector<int32_t>& equationMap,
                       const std::vector<int32_t>& dofFixed, Complex* packed) {
    size_t equation = 0, free = 0;
    for (size_t d = 0; d < dofFixed.size(); ++d) {
        Complex b(0.0, 0.0);
        if (boundaryLoad != nullptr && equationMap[d] != -1) b = boundaryLoad[equation++];
        const Complex r = inertiaLoad[d] + b;
        if (dofFixed[d] == 0) packed[free++] = r;
    }
}

void StoreLineSolution(const Complex* packed, const std::vector<int32_t>& dofFixed, int line,
                       std::vector<CNode>& nodes) {
    size_t free = 0;
    for (size_t d = 0; d < dofFixed.size(); ++d) {
        const Complex u = dofFixed[d] == 0 ? packed[free++] : Complex(0.0, 0.0);
        CNode& node = nodes[d / 2];
        (d % 2 == 0 ? node.dispX : node.dispY)[line] = u;
    }
}

void EnsureSpectrumLength(std::vector<CNode>& nodes, size_t count) {
    for (CNode& node : nodes) {
        for (ComplexVector* spectrum : {&node.dispX, &node.dispY})
            if (spectrum->size() < count) spectrum->data.resize(count, Complex(0.0, 0.0));
    }
}

void PrintLineProgress(int line, double duration, const ComplexVector& waveSpectrum) {
    const double spectrum = duration * std::abs(waveSpectrum[line]);
    std::fprintf(stderr, "\rCalculate %.2lf Hz : ωs = %.2lf FFTSpc %.3lf",
                 LineFrequency(line, duration), LineCircularFrequency(line, duration), spectrum);
}
