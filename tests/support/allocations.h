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
inline thread_local bool isForGood = false;
inline thread_local bool isFailureReached = false;
inline constexpr std::ptrdiff_t kPlenty = PTRDIFF_MAX / 2;
inline thread_local std::ptrdiff_t bytesLeft = kPlenty;

/// Memory runs short for this thread while it lives. Neither a sanitizer's allocator nor valgrind's can be
/// made to fail; `kCanFail` tells.
class Shortage
{
public:
    Shortage(std::size_t nth, std::ptrdiff_t bytes, bool forGood = false)
    {
        isForGood = forGood;
        isFailureReached = false;
        untilFailure = nth;
        bytesLeft = bytes;
    }
    ~Shortage()
    {
        untilFailure = 0;
        bytesLeft = kPlenty;
    }
    Shortage(const Shortage&) = delete;
    Shortage& operator=(const Shortage&) = delete;

    /// Whether an allocation has failed.
    bool failed() const { return isFailureReached; }
};

/// Only the `nth` allocation fails, counted from 1.
struct FailAt : Shortage
{
    explicit FailAt(std::size_t nth) : Shortage(nth, kPlenty) {}
};

/// The `nth` allocation fails, and all after it.
struct FailFrom : Shortage
{
    explicit FailFrom(std::size_t nth) : Shortage(nth, kPlenty, true) {}
};

/// There are only so many pieces of 256 bytes more than there are.
struct Budget : Shortage
{
    explicit Budget(std::size_t pieces) : Shortage(0, static_cast<std::ptrdiff_t>(pieces * 256)) {}
};

extern const bool kCanFail;

} // namespace allocations
