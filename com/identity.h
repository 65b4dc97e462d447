// The COM basics of an object: QueryInterface over a list of interfaces, and a plain reference count.

#pragma once

#include "KelComWrapper/unknown.h"

#include <initializer_list>

namespace kelxml::com
{

/// Returns the object's own address for every identifier in `supported`. Single inheritance makes this valid:
/// each interface begins at the object's address.
template <class Object>
HRESULT queryInterface(Object& self, std::initializer_list<const GUID*> supported, const GUID& riid,
                       void** ppv)
{
    if (!ppv)
        return E_POINTER;
    for (const GUID* const identifier : supported) {
        if (*identifier == riid) {
            *ppv = &self;
            self.AddRef();
            return S_OK;
        }
    }
    *ppv = nullptr;
    return E_NOINTERFACE;
}

inline ULONG addReference(ULONG& count) noexcept
{
    return ++count;
}

/// Releases a reference. When the count reaches 0, destroys the object through its vtable, because no class
/// is `final`. If the count is already 0, the count wraps around and nothing is destroyed.
template <class Object>
ULONG releaseReference(Object& self, ULONG& count) noexcept
{
    const ULONG remaining = --count;
    if (remaining == 0)
        delete &self;
    return remaining;
}

} // namespace kelxml::com
