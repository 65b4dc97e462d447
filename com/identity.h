// The COM basics of an object: QueryInterface for a list of interfaces, and a reference count. The count is
// not atomic, because only one thread at a time uses an object.

#pragma once

#include "KelComWrapper/unknown.h"

#include <initializer_list>

namespace kelxml::com
{

/// Implements `QueryInterface`. For every identifier in `supported`, stores the address of `self` in `*ppv`.
/// All interfaces of an object begin at this address, because each class has only one base with virtual
/// functions, and each interface has only one base interface.
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

/// Releases one reference to `self`. When `count` reaches 0, deletes `self` through the virtual destructor,
/// because `self` may be of a derived class. If `count` is 0 before the call, `count` wraps around and `self`
/// is not deleted.
template <class Object>
ULONG releaseReference(Object& self, ULONG& count) noexcept
{
    const ULONG remaining = --count;
    if (remaining == 0)
        delete &self;
    return remaining;
}

} // namespace kelxml::com
