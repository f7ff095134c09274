// Parallel loops whose console progress reads as if the loop ran in order.
#pragma once

#include <cstdint>
#include <functional>

// Runs work(i) for every i from 0 below count on the worker threads (guided schedule, chunk 1),
// a slice of indices at a time. Before each slice the calling thread runs progress(i) for the
// slice's indices in order and flushes standard output, so the console shows the same text as
// a loop in order would.
void ForEachWithProgress(int64_t count, int64_t slice, const std::function<void(int64_t)>& progress,
                         const std::function<void(int64_t)>& work);

// A slice of some multiple of the worker count, at least minimum.
int64_t SliceForWorkers(int64_t perWorker, int64_t minimum);
