// The memory a run must hold at once, against the machine's physical memory, so that a record
// too long for the mesh stops before it is allocated rather than swapping without end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// The least memory, in bytes, that a run holds from the input to its end for a record padded to
// paddedLength samples and a mesh of nodeCount nodes: the padded wave (8 bytes a sample), its
// spectrum (16 bytes a sample) and each node's two response spectra of paddedLength / 2 + 1
// complex lines (16 bytes a line). The solver and the syntheses need working space on top.
// A double, so that no product overflows.
double LeastRunMemory(double paddedLength, double nodeCount);

// The fault when that memory exceeds the physical memory ("needs at least 30.0 GiB of memory,
// the machine has 23.4 GiB"); empty when it fits or the machine does not tell its memory.
std::string MemoryShortfall(double paddedLength, double nodeCount,
                            std::optional<uint64_t> physicalMemory);
