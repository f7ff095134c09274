#include "linalg/solver_memory.hpp"

#include <SuiteSparse_config.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(SolverMemory, KeptBlocksServeTheNextRequestClearedAndReallocationKeepsTheContents) {
    constexpr size_t kBlock = size_t{3} << 20;
    UseSolverMemory();
    SolverMemoryCache cache;
    auto* first = static_cast<char*>(SuiteSparse_config.malloc_func(kBlock));
    ASSERT_NE(first, nullptr);
    std::memset(first, 7, kBlock);
    SuiteSparse_config.free_func(first);
    // A request of more than twice the size does not take the kept block; a smaller one does.
    void* larger = SuiteSparse_config.malloc_func(kBlock / 2 * 5);
    EXPECT_NE(larger, first);
    SuiteSparse_config.free_func(larger);
    auto* zeros = static_cast<char*>(SuiteSparse_config.calloc_func(kBlock - 100, 1));
    EXPECT_EQ(zeros, first);
    EXPECT_EQ(zeros[0], 0);
    EXPECT_EQ(zeros[kBlock - 101], 0);
    zeros[10] = 42;
    auto* grown = static_cast<char*>(SuiteSparse_config.realloc_func(zeros, 2 * kBlock));
    EXPECT_EQ(grown[10], 42);
    EXPECT_EQ(SuiteSparse_config.realloc_func(grown, 16), grown);  // shrinking keeps the block
    SuiteSparse_config.free_func(grown);
}

}  // namespace
