// Counting live allocations, and making them fail.

#pragma once

#include <cstddef>
#include <new>

namespace allocations
{

/// What is live in the process: a number that is the same again when everything made since has been freed.
std::size_t live();

enum class Lack {
    Once,    ///< only the `nth` allocation fails, counted from 1
    ForGood, ///< the `nth` allocation fails, and all after it
    OfBytes, ///< there are only `nth` pieces of 256 bytes more than there are
    OfSpace  ///< the process gets only `nth` pieces of 16 KiB of address space more than it has, from now on
};

/// Memory runs short for this thread while it lives. Neither a sanitizer's allocator nor valgrind's can be
/// made to fail; `kCanFail` tells.
class FailAt
{
public:
    explicit FailAt(std::size_t nth, Lack lack = Lack::Once);
    ~FailAt();
    FailAt(const FailAt&) = delete;

    /// Whether an allocation has failed; always false for lack of space.
    bool failed() const;
};

/// \return whether memory ran out in `work`
template <class Work>
bool failsIn(std::size_t nth, Work work, Lack lack = Lack::Once)
{
    const FailAt shortage(nth, lack);
    try {
        work();
    } catch (const std::bad_alloc&) {
        return true;
    }
    return shortage.failed();
}

extern const bool kCanFail;

} // namespace allocations
