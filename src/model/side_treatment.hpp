// How the left and right edges of the section are treated: the seventh analysis constant.
#pragma once

#include <cstdint>

enum class SideTreatment {
    kTransmitting,  // 0: energy-transmitting boundary, a side matrix per line plus free-field load
    kViscous,       // 1: side dashpots with free-field load
    kNone,          // any other code: the edges are left as they are
};

inline SideTreatment SideTreatmentOf(int32_t code) {
    if (code == 0) return SideTreatment::kTransmitting;
    if (code == 1) return SideTreatment::kViscous;
    return SideTreatment::kNone;
}
