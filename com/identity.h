// What makes an object a COM object: one identity, the interfaces it answers, one plain count.

#pragma once

#include "KelComWrapper/unknown.h"

#include <initializer_list>

namespace kelxml::com
{

/// Answers for the identifiers in `answered`, in that order, with the object's own address: the chain of
/// interfaces is single, so that every interface begins where the object does.
template <class Object>
HRESULT queryInterface(Object& self, std::initializer_list<const GUID*> answered, const GUID& riid,
                       void** ppv)
{
    if (!ppv)
        return E_POINTER;
    for (const GUID* const identifier : answered) {
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

/// Releases a reference. The last one destroys the object through its dispatch table: no class is `final`.
/// A count that is 0 already wraps and destroys nothing.
template <class Object>
ULONG releaseReference(Object& self, ULONG& count) noexcept
{
    const ULONG left = --count;
    if (left == 0)
        delete &self;
    return left;
}

} // namespace kelxml::com
