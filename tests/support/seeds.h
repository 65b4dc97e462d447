// Repeats a test with many seeds.

#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

/// Calls `use` with each seed from `first` to `end - 1`, until a check fails. The calls run in a child
/// process. If the child process crashes, its parent still reports the seed.
template <class Use>
void forEachSeed(unsigned first, unsigned end, Use use)
{
    void* const shared = mmap(nullptr, 4, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    volatile unsigned& seed = *static_cast<unsigned*>(shared);
    seed = first;
    if (fork() == 0) {
        for (; seed < end; ++seed) {
            EXPECT_NO_THROW(use(seed));
            if (testing::Test::HasFailure())
                std::exit(1);
        }
        std::exit(0);
    }
    int status = -1;
    wait(&status);
    EXPECT_EQ(0, status) << "the child process must exit with 0; it ended at seed " << seed;
}
