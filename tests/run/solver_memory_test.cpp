#include "run/solver_memory.hpp"

#include <SuiteSparse_config.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

constexpr size_t kBlock = size_t{3} << 20;

TEST(SolverMemory, LargeBlocksAreKeptForTheNextRequestOfTheThread) {
    UseSolverMemory();
    SolverMemoryCache cache;
    void* first = SuiteSparse_config.malloc_func(kBlock);
    ASSERT_NE(first, nullptr);
    SuiteSparse_config.free_func(first);
    void* again = SuiteSparse_config.malloc_func(kBlock - 100);
    EXPECT_EQ(again, first);
    // A request of more than twice the size does not take it.
    void* larger = SuiteSparse_config.malloc_func(kBlock / 2 * 5);
    EXPECT_NE(larger, first);
    SuiteSparse_config.free_func(larger);
    SuiteSparse_config.free_func(again);
}

TEST(SolverMemory, ReallocationKeepsTheContentsAndCallocClears) {
    UseSolverMemory();
    SolverMemoryCache cache;
    auto* p = static_cast<char*>(SuiteSparse_config.malloc_func(kBlock));
    std::memset(p, 7, kBlock);
    SuiteSparse_config.free_func(p);
    // The kept block comes back cleared.
    auto* zeros = static_cast<char*>(SuiteSparse_config.calloc_func(kBlock, 1));
    EXPECT_EQ(zeros[0], 0);
    EXPECT_EQ(zeros[kBlock - 1], 0);
    zeros[10] = 42;
    auto* grown = static_cast<char*>(SuiteSparse_config.realloc_func(zeros, 2 * kBlock));
    EXPECT_EQ(grown[10], 42);
    EXPECT_EQ(SuiteSparse_config.realloc_func(grown, 16), grown);  // shrinking keeps the block
    SuiteSparse_config.free_func(grown);
}

}  // namespace
