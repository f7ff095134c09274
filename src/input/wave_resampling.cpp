#include "input/wave_resampling.hpp"

#include <cmath>

double ResampledLength(double tStart, double tEnd, double timeStep) {
    // The 1e-08 keeps an end time that is a whole multiple of the step from gaining a sample
    // through rounding.
    return std::ceil(((tEnd - tStart) - 1e-08) / timeStep) + 1.0;
}

bool ResampleLinear(const std::vector<double>& times, const std::vector<double>& values,
                    double timeStep, double tStart, double tEnd, std::vector<double>& acc) {
    size_t k = 0;
    const size_t length = acc.size();
    for (size_t s = 0; s + 1 < times.size(); ++s) {
        if (times[s] < tStart) continue;
        if (times[s] > tEnd) break;
        const double d = times[s + 1] - times[s];
        if (d == 0.0) return false;
        const double slope = (values[s + 1] - values[s]) / d;
        // The time is taken afresh at each segment and carried by addition inside it.
        double t = static_cast<double>(k) * timeStep;
        while (!(t > times[s + 1])) {
            if (k >= length) return true;  // samples out of time order reach past the end
            acc[k] = (t - times[s]) * slope + values[s];
            ++k;
            t += timeStep;
        }
    }
    return true;
}

size_t PowerOfTwoAtLeast(size_t n) {
    size_t p = 1;
    while (p < n) p <<= 1;
    return p;
}

int CountFrequencyLines(double cutoffFrequency, size_t paddedLength, double timeStep) {
    const double p = static_cast<double>(paddedLength);
    int count = 0;
    for (size_t i = 0; i < paddedLength; ++i) {
        if (cutoffFrequency < (static_cast<double>(i) / p) / timeStep) break;
        ++count;
    }
    return count;
}
