#include "linalg/solver_memory.hpp"

#include <SuiteSparse_config.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace {

// Blocks from this size on are worth keeping; a thread keeps a few of them.
constexpr size_t kLargeBlock = size_t{1} << 20;
constexpr size_t kKeptBlocks = 8;

// Every block carries its capacity in front of it; 16 bytes keep the malloc alignment.
struct alignas(16) BlockHeader {
    size_t capacity;
};

struct ThreadCache {
    int users = 0;
    std::vector<BlockHeader*> kept;

    ~ThreadCache() { Release(); }
    void Release() {
        for (BlockHeader* block : kept) std::free(block);
        kept.clear();
    }
};

thread_local ThreadCache gCache;

void* Payload(BlockHeader* block) {
    return block + 1;
}
BlockHeader* HeaderOf(void* p) {
    return static_cast<BlockHeader*>(p) - 1;
}

// The smallest kept block that holds n bytes without wasting more than n again.
BlockHeader* TakeKept(size_t n) {
    auto& kept = gCache.kept;
    auto best = kept.end();
    for (auto it = kept.begin(); it != kept.end(); ++it)
        if ((*it)->capacity >= n && (*it)->capacity <= 2 * n &&
            (best == kept.end() || (*it)->capacity < (*best)->capacity))
            best = it;
    if (best == kept.end()) return nullptr;
    BlockHeader* block = *best;
    kept.erase(best);
    return block;
}

void* SolverMalloc(size_t n) {
    n = std::max<size_t>(n, 1);
    if (n >= kLargeBlock && gCache.users > 0)
        if (BlockHeader* block = TakeKept(n)) return Payload(block);
    auto* block = static_cast<BlockHeader*>(std::malloc(sizeof(BlockHeader) + n));
    if (block == nullptr) return nullptr;
    block->capacity = n;
    return Payload(block);
}

void SolverFree(void* p) {
    if (p == nullptr) return;
    BlockHeader* block = HeaderOf(p);
    if (block->capacity >= kLargeBlock && gCache.users > 0) {
        auto& kept = gCache.kept;
        if (kept.size() == kKeptBlocks) {
            // Make room by dropping the smallest.
            auto smallest = std::min_element(kept.begin(), kept.end(), [](auto* a, auto* b) {
                return a->capacity < b->capacity;
            });
            if ((*smallest)->capacity > block->capacity) {
                std::free(block);
                return;
            }
            std::free(*smallest);
            kept.erase(smallest);
        }
        kept.push_back(block);
        return;
    }
    std::free(block);
}

void* SolverCalloc(size_t count, size_t size) {
    if (size != 0 && count > static_cast<size_t>(-1) / size) return nullptr;
    void* p = SolverMalloc(count * size);
    if (p != nullptr) std::memset(p, 0, count * size);
    return p;
}

void* SolverRealloc(void* p, size_t n) {
    if (p == nullptr) return SolverMalloc(n);
    BlockHeader* block = HeaderOf(p);
    if (n <= block->capacity) return p;
    if (gCache.users == 0) {
        auto* grown = static_cast<BlockHeader*>(std::realloc(block, sizeof(BlockHeader) + n));
        if (grown == nullptr) return nullptr;
        grown->capacity = n;
        return Payload(grown);
    }
    void* q = SolverMalloc(n);
    if (q == nullptr) return nullptr;
    std::memcpy(q, p, block->capacity);
    SolverFree(p);
    return q;
}

}  // namespace

void UseSolverMemory() {
    static std::once_flag once;
    std::call_once(once, [] {
        SuiteSparse_config.malloc_func = SolverMalloc;
        SuiteSparse_config.calloc_func = SolverCalloc;
        SuiteSparse_config.realloc_func = SolverRealloc;
        SuiteSparse_config.free_func = SolverFree;
    });
}

SolverMemoryCache::SolverMemoryCache() {
    ++gCache.users;
}

SolverMemoryCache::~SolverMemoryCache() {
    if (--gCache.users == 0) gCache.Release();
}
