/// \file
/// IUnknown: identity and reference counting, the root of every interface.

#pragma once

#include "export.h"
#include "types.h"

/// Identity and lifetime of an object. Counts are per object and not atomic: an object is used by one thread
/// at a time. Type libraries and type information are the exception: theirs are atomic.
class IUnknown
{
public:
    /// Asks the object for one of its interfaces.
    /// \param riid the identifier of the interface
    /// \param ppv receives the interface pointer with one reference, which the caller releases;
    ///        null when the interface is not answered
    /// \return `S_OK`; `E_POINTER` when `ppv` is null; `E_NOINTERFACE`
    virtual HRESULT QueryInterface(const GUID& riid, void** ppv) = 0;
    /// Takes a reference. \return the new count
    virtual ULONG AddRef() = 0;
    /// Gives a reference back; the last one destroys the object. Lets no exception out.
    /// \return the new count, 0 when the object was destroyed
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

/// The identifier of `IUnknown`, which every object answers with one and the same pointer.
extern "C" KEL_EXPORT const GUID IID_IUnknown;
