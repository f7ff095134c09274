// Memory of the direct solver. Each factorisation asks the system for its large blocks afresh,
// and fresh pages cost the kernel a fault and a clearing each: about a fifth of a factorisation
// of a section of 20,000 equations. While a SolverMemoryCache lives in a thread, the large blocks
// that the solver frees in that thread are kept for the next factorisation of the same thread.
#pragma once

#include <cstddef>
#include <vector>

// Puts the solver library's allocations through this module. Called once, before the first
// call of the solver library; later calls do nothing.
void UseSolverMemory();

// Keeps the large blocks freed in the calling thread while it lives; gives them back to the
// system when the last cache of the thread ends. Lives and dies in one thread.
class SolverMemoryCache {
  public:
    SolverMemoryCache();
    ~SolverMemoryCache();
    SolverMemoryCache(const SolverMemoryCache&) = delete;
    SolverMemoryCache& operator=(const SolverMemoryCache&) = delete;
};
