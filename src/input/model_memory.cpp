#include "input/model_memory.hpp"

#include <cstdio>

uint64_t WaveBytes(uint64_t paddedLength) {
    return 64 * paddedLength;
}

uint64_t NodeSpectraBytes(uint64_t paddedLength) {
    return 2 * (paddedLength / 2 + 1) * 16;
}

std::string MegabytesText(uint64_t bytes) {
    char text[40];
    std::snprintf(text, sizeof text, "%.1f MB", static_cast<double>(bytes) / 1e6);
    return text;
}
