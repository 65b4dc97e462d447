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
    Bytes,       ///< this thread can allocate only 256 x `nth` more bytes
    AddressSpace ///< the process gets only 16 KiB x `nth` more address space, for the rest of its life
};

/// Runs `work`. Meanwhile, allocations of the calling thread fail as `nth` and `shortage` say. Catches
/// std::bad_alloc.
/// \return whether an allocation failed; for `AddressSpace`, whether `work` threw std::bad_alloc
bool failsIn(std::size_t nth, const std::function<void()>& work, Shortage shortage = Shortage::OneFailure);

/// Whether `failsIn` can make allocations fail. False under valgrind and sanitizers, which replace the
/// allocator.
extern const bool kCanFail;

} // namespace allocations
