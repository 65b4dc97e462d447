// Stands between the program and the C library's allocator; a sanitizer has an allocator of its own, which is
// asked instead.

#include "support/allocations.h"

#include <cerrno>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace allocations
{

const bool kCanFail = false;

std::size_t live()
{
    return __sanitizer_get_current_allocated_bytes();
}

FailAt::FailAt(std::size_t) {}
FailAt::~FailAt() = default;
bool FailAt::failed() const
{
    return false;
}

} // namespace allocations

#else

#include <atomic>

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
thread_local std::size_t untilFailure = 0;
thread_local bool failureReached = false;

bool failsNow()
{
    if (untilFailure == 0 || --untilFailure > 0)
        return false;
    failureReached = true;
    errno = ENOMEM;
    return true;
}

void* counted(void* memory)
{
    if (memory)
        ++liveCount;
    return memory;
}

} // namespace

extern "C" {
void* malloc(std::size_t size)
{
    return failsNow() ? nullptr : counted(__libc_malloc(size));
}
void* calloc(std::size_t count, std::size_t size)
{
    return failsNow() ? nullptr : counted(__libc_calloc(count, size));
}
void* realloc(void* memory, std::size_t size)
{
    if (failsNow())
        return nullptr;
    void* const moved = __libc_realloc(memory, size);
    return memory ? moved : counted(moved);
}
void* memalign(std::size_t alignment, std::size_t size)
{
    return failsNow() ? nullptr : counted(__libc_memalign(alignment, size));
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
    __libc_free(memory);
}
}

namespace allocations
{

// Under valgrind, which puts its own allocator in place of this one, nothing fails.
const bool kCanFail = [] {
    FailAt first(1);
    void* volatile memory = std::malloc(1);
    const bool failed = !memory;
    std::free(memory);
    return failed;
}();

std::size_t live()
{
    return liveCount;
}

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

} // namespace allocations

#endif
