// Stands between the program and the C library's allocator; a sanitizer has an allocator of its own, which is
// asked instead.

#include "support/allocations.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace
{

constexpr std::size_t kNoBudget = std::numeric_limits<std::size_t>::max();

thread_local std::size_t untilFailure = 0;
thread_local bool failureReached = false;
thread_local std::size_t budget = kNoBudget;

} // namespace

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
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}

namespace
{

std::atomic<std::size_t> liveCount{0};

bool failsNow(std::size_t size)
{
    if (budget < size) {
        errno = ENOMEM;
        return true;
    }
    if (untilFailure == 0 || --untilFailure > 0)
        return false;
    failureReached = true;
    errno = ENOMEM;
    return true;
}

void pay(std::size_t size)
{
    if (budget != kNoBudget)
        budget -= std::min(budget, size);
}

void* counted(void* memory)
{
    if (memory) {
        ++liveCount;
        pay(malloc_usable_size(memory));
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
void* realloc(void* memory, std::size_t size)
{
    if (failsNow(size))
        return nullptr;
    const std::size_t before = memory ? malloc_usable_size(memory) : 0;
    void* const moved = __libc_realloc(memory, size);
    if (!memory)
        return counted(moved);
    if (moved && budget != kNoBudget)
        budget += before;
    if (moved)
        pay(malloc_usable_size(moved));
    return moved;
}
void* memalign(std::size_t alignment, std::size_t size)
{
    return failsNow(size) ? nullptr : counted(__libc_memalign(alignment, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return memalign(alignment, size);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size)
{
    *memory = memalign(alignment, size);
    return *memory ? 0 : ENOMEM;
}
void free(void* memory)
{
    if (memory)
        --liveCount;
    if (memory && budget != kNoBudget)
        budget += malloc_usable_size(memory);
    __libc_free(memory);
}
}

std::size_t allocations::live()
{
    return liveCount;
}

#endif

namespace allocations
{

// Under valgrind and the sanitizers, whose allocators take the place of this one, nothing fails.
const bool kCanFail = [] {
    FailAt first(1);
    void* volatile memory = std::malloc(1);
    const bool failed = !memory;
    std::free(memory);
    return failed;
}();

FailAt::FailAt(std::size_t nth)
{
    failureReached = false;
    untilFailure = nth;
}

FailAt::~FailAt()
{
    untilFailure = 0;
}

bool FailAt::failed() const
{
    return failureReached;
}

Budget::Budget(std::size_t bytes)
{
    budget = bytes;
}

Budget::~Budget()
{
    budget = kNoBudget;
}

} // namespace allocations
