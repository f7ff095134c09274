#include "model/run_memory.hpp"

#include <cmath>
#include <cstdio>

double LeastRunMemory(double paddedLength, double nodeCount) {
    const double wave = 24.0 * paddedLength;
    const double spectrumLines = std::floor(paddedLength / 2.0) + 1.0;
    return wave + nodeCount * 2.0 * 16.0 * spectrumLines;
}

std::string MemoryShortfall(double paddedLength, double nodeCount,
                            std::optional<uint64_t> physicalMemory) {
    if (!physicalMemory) return "";
    const double needed = LeastRunMemory(paddedLength, nodeCount);
    const double available = static_cast<double>(*physicalMemory);
    if (needed <= available) return "";
    constexpr double kGiB = 1024.0 * 1024.0 * 1024.0;
    char text[120];
    std::snprintf(text, sizeof text, "needs at least %.1f GiB of memory, the machine has %.1f GiB",
                  needed / kGiB, available / kGiB);
    return text;
}
