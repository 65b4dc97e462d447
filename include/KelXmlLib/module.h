/// \file
/// The entry points for the host's module loader and its COM-style callers, with C linkage.

#pragma once

#include "KelComWrapper/types.h"

/// An entry of the object map: a class that can be created. The last entry of the map has a null creator.
struct ObjectMapEntry
{
    /// Creates an object with one reference, which the caller releases.
    using Creator = HRESULT (*)(void* outer, const GUID& riid, void** object);

    const GUID* classId; ///< the class of the objects that `creator` creates
    void* reserved1[2];  ///< null
    Creator creator;     ///< null in the last entry
    void* reserved2[5];  ///< null
};
static_assert(sizeof(ObjectMapEntry) == 9 * sizeof(void*), "the stride of the map is nine pointers");

#pragma GCC visibility push(default)
extern "C" {

/// The object map. Null until `DllMain` is called with reason 1, and never null again.
extern const ObjectMapEntry* _xmlModule;

/// Attaches the library, so that `DllGetClassObject` works. Make the first call before other threads use the
/// library. Later calls do nothing, and any thread may make them.
/// \param module, reserved not used
/// \param reason 1 (process attach) attaches the library; any other reason does nothing
/// \return 1, always
int DllMain(void* module, unsigned int reason, void* reserved);

/// Creates an object of a class; there is no class factory. Several threads may call it at once.
/// \param classId `CLSID_DOMDocument`
/// \param riid the interface to return, such as `IID_IXMLDOMDocument`
/// \param object receives the object with one reference, which the caller releases
/// \return `S_OK`; `E_NOINTERFACE`, which sets `object` to null; `E_NOTIMPL` for an unknown class; `E_FAIL`
///         if `object` is null or `DllMain` was not called. `E_NOTIMPL` and `E_FAIL` leave `object` unchanged
/// \throw std::bad_alloc if memory runs out; `object` is unchanged
HRESULT DllGetClassObject(const GUID& classId, const GUID& riid, void** object);

/// Does nothing. The module loader calls it on load.
/// \return 1
int ylrxDelegatedLoadEntry(void);

/// Does nothing. The module loader calls it on unload, and existing objects stay valid.
void ylrxDelegatedUnloadEntry(void);
}
#pragma GCC visibility pop
