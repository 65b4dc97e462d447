// Finds out for each thread where its stack ends. A stack that the system does not know, such as one that a
// host made for a coroutine, counts as a small one.

#include "guards/stack_room.h"

#include "guards/limits.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <new>
#include <pthread.h>
#include <sys/auxv.h>
#include <sys/resource.h>

namespace kelxml::guards
{

namespace
{

// Measured for Qt 5.15: 340 and 1,430 bytes a level. The margin allows for other builds of it.
constexpr std::size_t kParseBytesPerLevel = 512;
constexpr std::size_t kSaveBytesPerLevel = 1792;

// What is needed beside the recursion: Qt's buffers and streams, and the signal handler of a host.
constexpr std::size_t kReserve = std::size_t{48} * 1024;

// What is taken to be free on a stack that the system does not know.
constexpr std::size_t kUnknownStack = std::size_t{64} * 1024;

// What documents as people write them take at most.
constexpr std::size_t kLittle = std::size_t{64} * 1024;

// What the kernel keeps free below the first stack, even if that has no limit, and more than we ever ask for.
constexpr std::size_t kMostOfFirstStack = std::size_t{64} * 1024 * 1024;

struct Stack
{
    std::uintptr_t low = 0;
    std::uintptr_t high = 0;

    bool holds(std::uintptr_t address) const { return address > low && address <= high; }
};

/// The stack that the process began on, as far as its limit lets it grow. The kernel puts the program's name
/// at its top. The C library would read the same out of /proc, which a process does not always have.
Stack firstStack() noexcept
{
    const std::uintptr_t top = ::getauxval(AT_EXECFN);
    rlimit limit = {};
    if (top == 0 || ::getrlimit(RLIMIT_STACK, &limit) != 0)
        return {};
    return {top - std::min<std::uintptr_t>(limit.rlim_cur, kMostOfFirstStack), top};
}

/// The stack that the calling thread was started with; none when the system does not tell.
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

/// The bytes that are free. \param wanted of them, beside the reserve
std::size_t freeStack(std::size_t wanted)
{
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    // Only a stack that was found is remembered: what keeps the system from telling may pass. Before much is
    // used of the first stack, its limit is asked for again: it can be lowered at any time.
    static thread_local Stack known;
    if (!known.holds(here) || wanted > kLittle) {
        const Stack first = firstStack();
        const bool isOfThread = known.holds(here) && known.high != first.high;
        const Stack found = first.holds(here) ? first : isOfThread ? known : stackOfThread();
        known = found.holds(here) ? found : Stack();
    }
    return known.holds(here) ? here - known.low : kUnknownStack;
}

} // namespace

bool hasRoomToParse(int nesting)
{
    const std::size_t wanted = static_cast<std::size_t>(nesting) * kParseBytesPerLevel;
    return freeStack(wanted) >= wanted + kReserve;
}

int depthThatCanBeSaved()
{
    constexpr std::size_t kMost = kMaxNodeDepth * kSaveBytesPerLevel;
    const std::size_t room = std::clamp(freeStack(kMost), kReserve, kReserve + kMost) - kReserve;
    return static_cast<int>(room / kSaveBytesPerLevel);
}

} // namespace kelxml::guards
