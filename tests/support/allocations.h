// Counting live allocations, and making them fail.

#pragma once

#include <cstddef>
#include <functional>

namespace allocations
{

/// How much is allocated in the process: a number that returns to its earlier value when everything is freed.
std::size_t live();

enum class Lack {
    Once,    ///< only the `nth` allocation fails, counted from 1
    ForGood, ///< the `nth` allocation fails, and all after it
    OfBytes, ///< there are only `nth` pieces of 256 bytes more than there are
    OfSpace  ///< the process gets only `nth` pieces of 16 KiB of address space more than it has, from now on
};

/// Memory runs short for this thread in `work`. It does not where `kCanFail` is false: a sanitizer's
/// allocator, or valgrind's, cannot be made to fail. \return whether an allocation failed; for lack of space,
/// whether `work` threw
bool failsIn(std::size_t nth, const std::function<void()>& work, Lack lack = Lack::Once);

extern const bool kCanFail;

} // namespace allocations
