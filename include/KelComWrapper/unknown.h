/// \file
/// IUnknown, the root of every interface: identity and reference counting.

#pragma once

#include "export.h"
#include "types.h"

/// Manages the identity and the lifetime of an object. The reference count is not atomic, so use an object
/// from one thread at a time. Only type libraries and type information have atomic counts.
class IUnknown
{
public:
    /// Asks the object for one of its interfaces.
    /// \param riid the identifier of the interface
    /// \param ppv receives the interface pointer with one reference, which the caller releases; null if the
    ///        object does not have the interface
    /// \return `S_OK`; `E_POINTER` if `ppv` is null; `E_NOINTERFACE`
    virtual HRESULT QueryInterface(const GUID& riid, void** ppv) = 0;
    /// Adds a reference. \return the new count
    virtual ULONG AddRef() = 0;
    /// Releases a reference; the last one destroys the object. Never throws.
    /// \return the new count; 0 if the object was destroyed
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

/// The identifier of `IUnknown`. `QueryInterface` always returns the same pointer for it, so two pointers
/// refer to the same object if and only if their `IUnknown` pointers are equal.
extern "C" KEL_EXPORT const GUID IID_IUnknown;
