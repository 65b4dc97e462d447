// Counts live allocations, and makes allocations fail.

#pragma once

#include <cstddef>
#include <functional>

namespace allocations
{

/// The number of live allocations in the process; under a sanitizer, their bytes.
std::size_t live();

enum class Shortage {
    OneFailure,  ///< only the `nth` allocation fails, counted from 1
    FromThenOn,  ///< the `nth` allocation fails, and all after it
    Bytes,       ///< this thread can allocate only `nth` times 256 more bytes
    AddressSpace ///< from now on, the process gets only `nth` times 16 KiB more address space
};

/// Runs `work`, and makes allocations of this thread fail meanwhile. \return whether an allocation failed;
/// for `AddressSpace`, whether `work` threw std::bad_alloc
bool failsIn(std::size_t nth, const std::function<void()>& work, Shortage shortage = Shortage::OneFailure);

/// False under valgrind and sanitizers: no allocation fails, because they replace the allocator.
extern const bool kCanFail;

} // namespace allocations
