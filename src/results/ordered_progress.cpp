#include "results/ordered_progress.hpp"

#include <omp.h>

#include <algorithm>

#include "base/console.hpp"

void ForEachWithProgress(int64_t count, int64_t slice, const std::function<void(int64_t)>& progress,
                         const std::function<void(int64_t)>& work) {
    slice = std::max<int64_t>(1, slice);
    for (int64_t begin = 0; begin < count; begin += slice) {
        const int64_t end = std::min(count, begin + slice);
        for (int64_t i = begin; i < end; ++i) progress(i);
        console::Flush();
#pragma omp parallel for schedule(guided, 1)
        for (int64_t i = begin; i < end; ++i) work(i);
    }
}

int64_t SliceForWorkers(int64_t perWorker, int64_t minimum) {
    return std::max<int64_t>(minimum, perWorker * std::max(1, omp_get_max_threads()));
}
