// Counting live allocations, and making them fail.

#pragma once

#include <cstddef>
#include <cstdint>

namespace allocations
{

/// What is live in the process: a number that is the same again when everything made since has been freed.
std::size_t live();

/// What the allocator asks before each allocation of this thread; set by the classes below.
inline thread_local std::size_t untilFailure = 0;
inline thread_local bool staysOut = false;
inline thread_local bool isFailureReached = false;
inline constexpr std::ptrdiff_t kPlenty = PTRDIFF_MAX / 2;
inline thread_local std::ptrdiff_t bytesLeft = kPlenty;

/// Fails the `nth` allocation of this thread, counted from 1, while it lives, or that one and all after it.
/// Neither a sanitizer's allocator nor valgrind's can be made to; `kCanFail` tells.
class FailAt
{
public:
    explicit FailAt(std::size_t nth, bool andAllAfter = false)
    {
        isFailureReached = false;
        staysOut = andAllAfter;
        untilFailure = nth;
    }
    ~FailAt()
    {
        untilFailure = 0;
        staysOut = false;
    }
    FailAt(const FailAt&) = delete;
    FailAt& operator=(const FailAt&) = delete;

    /// Whether that allocation was reached.
    bool failed() const { return isFailureReached; }
};

/// Lets this thread have only so many bytes more than it has, while it lives.
class Budget
{
public:
    explicit Budget(std::ptrdiff_t bytes) { bytesLeft = bytes; }
    ~Budget() { bytesLeft = kPlenty; }
    Budget(const Budget&) = delete;
    Budget& operator=(const Budget&) = delete;
};

extern const bool kCanFail;

} // namespace allocations
