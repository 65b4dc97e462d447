/// \file
/// `IUnknown`, the base of every interface. It provides identity and reference counting.

#pragma once

#include "export.h"
#include "types.h"

/// Manages the identity and the lifetime of an object. The reference count is not atomic, so use an object
/// from one thread at a time. Two kinds of objects are an exception and have atomic counts: `ITypeLib` and
/// `ITypeInfo`.
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
    /// Releases a reference. The object is destroyed when its last reference is released. Never throws.
    /// \return the new count; 0 if the object was destroyed
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

/// The identifier of `IUnknown`. Whenever an object is asked for this identifier, `QueryInterface` returns
/// the same pointer. So two interface pointers belong to the same object if and only if their
/// `QueryInterface` functions return equal pointers for `IID_IUnknown`.
extern "C" KEL_EXPORT const GUID IID_IUnknown;
