// Finds where the calling thread's stack ends. If the thread runs on a stack that the system does not know,
// such as the stack of a coroutine, the free stack is assumed to be small.

#include "limits/stack_room.h"

#include "limits/limits.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <new>
#include <pthread.h>
#include <sys/auxv.h>
#include <sys/resource.h>

namespace kelxml::limits
{

namespace
{

// Stack that Qt needs per level. For Qt 5.15, we measured 340 bytes per level for parsing and 1,430 for
// saving. The constants are larger, because other builds of Qt may need more.
constexpr std::size_t kParseBytesPerLevel = 512;
constexpr std::size_t kSaveBytesPerLevel = 1792;

// Stack that is needed in addition to the recursion: for Qt's buffers and streams, and for a signal handler
// of the host.
constexpr std::size_t kReserve = std::size_t{48} * 1024;

// Number of bytes that are assumed to be free if the system does not know the current stack.
constexpr std::size_t kUnknownStack = std::size_t{64} * 1024;

// Maximum size assumed for the stack of the main thread. No operation needs more stack than this. At the
// start of the program, the kernel reserves more address space than this for the stack, even if the stack
// limit is low. So if the limit is raised later, the stack can grow to this size.
constexpr std::size_t kMaxMainStack = std::size_t{64} * 1024 * 1024;

struct Stack
{
    std::uintptr_t low = 0;
    std::uintptr_t high = 0;

    bool contains(std::uintptr_t address) const { return address > low && address <= high; }
};

/// Returns the stack that the calling thread was started with; an empty one if the system reports none.
Stack stackOfThread()
{
    pthread_attr_t attributes;
    const int error = pthread_getattr_np(pthread_self(), &attributes);
    if (error == ENOMEM)
        throw std::bad_alloc();
    if (error != 0)
        return {};
    void* address = nullptr;
    std::size_t size = 0;
    std::size_t guard = 0;
    pthread_attr_getstack(&attributes, &address, &size);
    pthread_attr_getguardsize(&attributes, &guard);
    pthread_attr_destroy(&attributes);
    const auto low = reinterpret_cast<std::uintptr_t>(address);
    return {low + guard, low + size};
}

/// Returns the number of free bytes in the stack that the calling thread is running on.
std::size_t freeStack()
{
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    // `AT_EXECFN` is the address of the program's name, which the kernel puts at the top of the main thread's
    // stack. The C library could also find the top, but would have to read /proc, which is not always
    // mounted.
    const std::uintptr_t top = ::getauxval(AT_EXECFN);
    if (Stack{top - kMaxMainStack, top}.contains(here)) {
        // The host can change the stack limit at any time, even to less than the stack already in use.
        rlimit limit = {};
        ::getrlimit(RLIMIT_STACK, &limit);
        const std::uintptr_t used = top - here;
        return std::max(std::min<std::uintptr_t>(limit.rlim_cur, kMaxMainStack), used) - used;
    }
    // A failure of `stackOfThread` is not cached, because it may be temporary.
    static thread_local Stack known;
    if (!known.contains(here))
        known = stackOfThread();
    return known.contains(here) ? here - known.low : kUnknownStack;
}

} // namespace

bool hasRoomToParse(int nesting)
{
    return freeStack() >= static_cast<std::size_t>(nesting) * kParseBytesPerLevel + kReserve;
}

int depthThatCanBeSaved()
{
    constexpr std::size_t kMost = kMaxNodeDepth * kSaveBytesPerLevel;
    const std::size_t room = std::clamp(freeStack(), kReserve, kReserve + kMost) - kReserve;
    return static_cast<int>(room / kSaveBytesPerLevel);
}

} // namespace kelxml::limits
