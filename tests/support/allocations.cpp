// Replaces malloc, calloc, realloc and free, to count allocations and to make allocations fail. Under a
// sanitizer, replaces nothing: the sanitizer has its own allocator, which counts the allocated bytes.

#include "support/allocations.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <new>
#include <sys/resource.h>
#include <utility>

namespace
{

using allocations::Shortage;

/// Says which allocations of this thread fail. By default, none fails.
struct State
{
    std::size_t first = SIZE_MAX; ///< number of the first allocation that fails
    std::size_t last = 0;         ///< number of the last allocation that fails
    std::size_t asked = 0;        ///< number of allocations so far
    std::ptrdiff_t bytesLeft = PTRDIFF_MAX / 2;
    bool isReached = false; ///< whether an allocation has failed
};
thread_local State state;

} // namespace

bool allocations::failsIn(std::size_t nth, const std::function<void()>& work, Shortage shortage)
{
    if (shortage == Shortage::AddressSpace) {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit limit = {pages * 4096 + nth * 16 * 1024, RLIM_INFINITY};
        setrlimit(RLIMIT_AS, &limit);
    } else if (shortage == Shortage::Bytes) {
        state.bytesLeft = static_cast<std::ptrdiff_t>(nth * 256);
    } else {
        state = {nth, shortage == Shortage::FromThenOn ? SIZE_MAX : nth};
    }
    try {
        work();
    } catch (const std::bad_alloc&) {
        state.isReached = true;
    }
    return std::exchange(state, {}).isReached;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

std::size_t allocations::live()
{
    return __sanitizer_get_current_allocated_bytes();
}

#else

#include <atomic>
#include <malloc.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void __libc_free(void* memory);
}

namespace
{

std::atomic<std::size_t> liveCount{0};

bool failsNow(std::size_t size)
{
    const bool isCounted = ++state.asked >= state.first && state.asked <= state.last;
    const bool fails = isCounted || state.bytesLeft < static_cast<std::ptrdiff_t>(size);
    if (fails)
        errno = ENOMEM;
    state.isReached = state.isReached || fails;
    return fails;
}

void* counted(void* memory)
{
    if (memory) {
        ++liveCount;
        state.bytesLeft -= static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
    }
    return memory;
}

} // namespace

extern "C" {
void* malloc(std::size_t size)
{
    return failsNow(size) ? nullptr : counted(__libc_malloc(size));
}
void* calloc(std::size_t count, std::size_t size)
{
    return failsNow(count * size) ? nullptr : counted(__libc_calloc(count, size));
}
void free(void* memory)
{
    if (memory) {
        --liveCount;
        state.bytesLeft += static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
    }
    __libc_free(memory);
}
void* realloc(void* memory, std::size_t size)
{
    void* const moved = malloc(size);
    if (moved && memory) {
        std::memcpy(moved, memory, std::min(size, malloc_usable_size(memory)));
        free(memory);
    }
    return moved;
}
}

std::size_t allocations::live()
{
    return liveCount;
}

#endif

const bool allocations::kCanFail = failsIn(1, [] { operator delete(operator new(1)); });
