// What the model being read will hold in memory, so that the readers can refuse a model that the
// machine cannot hold (MemoryBudgetBytes) before they allocate it: the wave with its spectrum and
// transform, and the response spectra that every node carries.
#pragma once

#include <cstdint>
#include <string>

// The padded wave, its spectrum and the transform's plans and scratch: some 64 bytes a sample.
uint64_t WaveBytes(uint64_t paddedLength);

// The x and y response spectra of one node, lines 0 .. P/2, complex doubles.
uint64_t NodeSpectraBytes(uint64_t paddedLength);

// "12.3 MB", for the messages.
std::string MegabytesText(uint64_t bytes);
