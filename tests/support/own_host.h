// A host that declares what it needs by itself: slots by number in a dispatch table, nothing from our
// headers.

#pragma once

#include <cstdint>
#include <cstring>

namespace own_host
{

struct Guid
{
    unsigned char bytes[16];
};

/// The published 64-bit VARIANT: three words of eight bytes, passed by value in memory.
struct Variant
{
    std::uint16_t type;
    std::uint16_t reserved[3];
    void* value;
    void* more;
};

/// Slots of the dispatch tables, counted from 0 with QueryInterface.
enum Slot {
    kQueryInterface = 0,
    kAddRef = 1,
    kRelease = 2,
    kGetTypeInfoCount = 3,
    kNodeName = 7,
    kNodeType = 10,
    kParentNode = 11,
    kChildNodes = 12,
    kFirstChild = 13,
    kAttributes = 17,
    kAppendChild = 21,
    kHasChildNodes = 22,
    kOwnerDocument = 23,
    kCloneNode = 24,
    kGetText = 26,
    kPutText = 27,
    kSelectNodes = 36,
    kDocumentElement = 45,
    kCreateNode = 56,
    kLoad = 58,
    kLoadXml = 65,
    kSave = 66,
    kDocumentDestructor = 76,
    kSetAttribute = 45,
    kElementDestructor = 52,
    kAttributeValue = 44,
    kListItem = 7,
    kListLength = 8,
    kListNext = 9,
    kMapNamedItem = 7,
    kMapItem = 10,
    kMapLength = 11,
};

/// Calls a slot of an object.
template <class... Arguments>
std::int32_t call(void* object, int slot, Arguments... arguments)
{
    void** table = nullptr;
    std::memcpy(&table, object, sizeof table);
    const auto function = reinterpret_cast<std::int32_t (*)(void*, Arguments...)>(table[slot]);
    return function(object, arguments...);
}

} // namespace own_host
