// Calls vtable slots by number, without any header of the library, as a host in another language does.

#pragma once

#include <cstdint>

namespace vtable_calls
{

/// The published layout of a 64-bit VARIANT: three words of eight bytes. A method that takes a VARIANT by
/// value receives it in memory, not in registers.
struct Variant
{
    std::uint16_t type;
    std::uint16_t reserved[3];
    void* value;
    void* more;
};

/// E_NOINTERFACE and E_POINTER.
constexpr std::int32_t kNoInterface = -0x7FFFBFFE, kNullPointer = -0x7FFFBFFD;

/// Slot numbers; QueryInterface has slot 0.
constexpr int kRelease = 2, kGetIdsOfNames = 5, kChildNodes = 12, kFirstChild = 13, kAttributes = 17,
              kDocumentElement = 45, kLoadXml = 65, kSave = 66, kMapItem = 10;

/// Calls the method in a slot as a function that takes `object` and `arguments`. The declaration of the
/// method is not needed.
template <class... Arguments>
__attribute__((no_sanitize("undefined"))) std::int32_t call(void* object, int slot, Arguments... arguments)
{
    void** const vtable = *static_cast<void***>(object);
    return reinterpret_cast<std::int32_t (*)(void*, Arguments...)>(vtable[slot])(object, arguments...);
}

} // namespace vtable_calls
