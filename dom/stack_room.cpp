// Asks the system once for each thread where its stack ends. A stack that the system does not know, such as
// one that a host made for a coroutine, counts as a small one.

#include "dom/stack_room.h"

#include <cstddef>
#include <cstdint>
#include <pthread.h>

namespace kelxml
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

struct Stack
{
    std::uintptr_t low = 0;
    std::uintptr_t high = 0;

    Stack() noexcept
    {
        pthread_attr_t attributes;
        if (pthread_getattr_np(pthread_self(), &attributes) != 0)
            return;
        void* address = nullptr;
        std::size_t size = 0;
        std::size_t guard = 0;
        if (pthread_attr_getstack(&attributes, &address, &size) == 0 &&
            pthread_attr_getguardsize(&attributes, &guard) == 0) {
            low = reinterpret_cast<std::uintptr_t>(address) + guard;
            high = reinterpret_cast<std::uintptr_t>(address) + size;
        }
        pthread_attr_destroy(&attributes);
    }
};

bool hasRoomFor(std::size_t bytes) noexcept
{
    static thread_local const Stack stack;
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const bool isKnown = here > stack.low && here <= stack.high;
    return (isKnown ? here - stack.low : kUnknownStack) >= bytes + kReserve;
}

} // namespace

bool hasRoomToParse(int nesting) noexcept
{
    return hasRoomFor(static_cast<std::size_t>(nesting) * kParseBytesPerLevel);
}

bool hasRoomToSave(int depth) noexcept
{
    return hasRoomFor(static_cast<std::size_t>(depth) * kSaveBytesPerLevel);
}

} // namespace kelxml
