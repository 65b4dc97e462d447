/// \file
/// The entry points for the host's module loader and its COM-style callers, with C linkage.

#pragma once

#include "KelComWrapper/types.h"

/// A class that can be created. The map that `_xmlModule` points to ends with an entry whose creator is null.
struct ObjectMapEntry
{
    /// Creates an object with one reference, which the caller releases.
    using Creator = HRESULT (*)(void* outer, const GUID& riid, void** object);

    const GUID* classId; ///< the class of the objects it creates
    void* reserved1[2];  ///< null
    Creator creator;     ///< null in the last entry
    void* reserved2[5];  ///< null
};
static_assert(sizeof(ObjectMapEntry) == 9 * sizeof(void*), "the stride of the map is nine pointers");

#pragma GCC visibility push(default)
extern "C" {

/// The object map: null until `DllMain` is called with reason 1, never reset afterwards.
extern const ObjectMapEntry* _xmlModule;

/// Attaches the library. Reason 1 (process attach) makes `DllGetClassObject` usable. Call it before any other
/// thread uses the library. Later calls are harmless, from any thread.
/// \param module, reserved not used
/// \param reason 1 for process attach; any other reason does nothing
/// \return 1, always
int DllMain(void* module, unsigned int reason, void* reserved);

/// Creates an object of a class; there is no class factory. Several threads may call it at once.
/// \param classId `CLSID_DOMDocument`
/// \param riid an interface of the object itself, such as `IID_IXMLDOMDocument`
/// \param object receives the object with one reference, which the caller releases
/// \return `S_OK`; `E_FAIL` if `object` is null or `DllMain` was not called, `E_NOTIMPL` for an unknown
///         class, both with `object` unchanged; `E_NOINTERFACE` with `object` null. If memory runs out,
///         throws `std::bad_alloc` with `object` unchanged
HRESULT DllGetClassObject(const GUID& classId, const GUID& riid, void** object);

/// Called by the module loader on load; does nothing.
/// \return 1
int ylrxDelegatedLoadEntry(void);

/// Called by the module loader on unload. Existing objects stay valid.
void ylrxDelegatedUnloadEntry(void);
}
#pragma GCC visibility pop
