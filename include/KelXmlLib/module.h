/// \file
/// The entries that the host's module loader and its COM-style callers use, with C linkage.

#pragma once

#include "KelComWrapper/types.h"

/// One creatable class. The map that `_xmlModule` points to ends with an entry without a creator.
struct ObjectMapEntry
{
    /// Makes an object with one reference, which the caller releases.
    using Creator = HRESULT (*)(void* outer, const GUID& riid, void** object);

    const GUID* classId; ///< the class that it makes an object of
    void* reserved1[2];  ///< null
    Creator creator;     ///< null in the last entry
    void* reserved2[5];  ///< null
};
static_assert(sizeof(ObjectMapEntry) == 9 * sizeof(void*), "the stride of the map is nine pointers");

#pragma GCC visibility push(default)
extern "C" {

/// The object map: null until `DllMain` is called with reason 1, never reset afterwards.
extern const ObjectMapEntry* _xmlModule;

/// Tells the library of its loading; reason 1 (process attach) makes `DllGetClassObject` usable. To be called
/// before any other thread uses the library; may be called again by any thread.
/// \param module, reserved not used
/// \param reason 1 for process attach; nothing is done for any other
/// \return 1 for every reason
int DllMain(void* module, unsigned int reason, void* reserved);

/// Makes a new object of a class; there is no class factory. May be called by several threads at once.
/// \param classId `CLSID_DOMDocument`
/// \param riid an interface of the object itself, such as `IID_IXMLDOMDocument`
/// \param object receives the object with one reference, which the caller releases
/// \return `S_OK`; `E_FAIL` when `object` is null or `DllMain` was not called; `E_NOTIMPL` for an unknown
///         class; with these, `object` is untouched. `E_NOINTERFACE`, `object` null. Out of memory,
///         `std::bad_alloc` passes through, `object` untouched
HRESULT DllGetClassObject(const GUID& classId, const GUID& riid, void** object);

/// The module loader's load entry; does nothing.
/// \return 1
int ylrxDelegatedLoadEntry(void);

/// The module loader's unload entry. Objects that are alive are not touched.
void ylrxDelegatedUnloadEntry(void);
}
#pragma GCC visibility pop
