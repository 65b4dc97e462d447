// Counting live allocations, and making them fail.

#pragma once

#include <cstddef>
#include <functional>

namespace allocations
{

/// How much is allocated in the process. Returns to its earlier value once everything is freed.
std::size_t live();

enum class Lack {
    Once,    ///< only the `nth` allocation fails, counted from 1
    ForGood, ///< the `nth` allocation fails, and all after it
    OfBytes, ///< this thread can allocate only `nth` more pieces of 256 bytes
    OfSpace  ///< the process gets only `nth` pieces of 16 KiB of address space more than it has, from now on
};

/// Makes allocations of this thread fail in `work`. If `kCanFail` is false, none fails, because the allocator
/// of a sanitizer or of valgrind cannot be made to. \return whether an allocation failed; for `OfSpace`,
/// whether `work` threw
bool failsIn(std::size_t nth, const std::function<void()>& work, Lack lack = Lack::Once);

extern const bool kCanFail;

} // namespace allocations
