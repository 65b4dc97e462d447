/// \file
/// The entry points of the library, with C linkage. A host program calls `DllMain` first, and then calls
/// `DllGetClassObject` to create objects. The module loader of the host program calls the two entry points
/// whose names begin with `ylrx`.

#pragma once

#include "KelComWrapper/types.h"

/// An entry of the object map. The object map lists the classes whose objects `DllGetClassObject` can create.
/// Each entry is for one class, except the last entry, which marks the end of the map.
struct ObjectMapEntry
{
    /// A function that creates an object with one reference, which the caller releases.
    using Creator = HRESULT (*)(void* outer, const GUID& riid, void** object);

    const GUID* classId; ///< the class of the created objects; null in the last entry
    void* reserved1[2];  ///< null
    Creator creator;     ///< null in the last entry
    void* reserved2[5];  ///< null
};
static_assert(sizeof(ObjectMapEntry) == 9 * sizeof(void*),
              "an entry of the object map has the size of nine pointers");

#pragma GCC visibility push(default)
extern "C" {

/// The first entry of the object map. Null until `DllMain` is called with reason 1, and never null
/// afterwards.
extern const ObjectMapEntry* _xmlModule;

/// Attaches the library, so that `DllGetClassObject` works. Call `DllMain` for the first time before other
/// threads use the library. Any thread may call `DllMain` again; such later calls do nothing.
/// \param module, reserved not used
/// \param reason 1 (process attach) attaches the library; any other reason does nothing
/// \return 1, always
int DllMain(void* module, unsigned int reason, void* reserved);

/// Creates an object of a class. Does not create a class factory. Several threads may call this function at
/// the same time.
/// \param classId the class of the object: `CLSID_DOMDocument`
/// \param riid the interface of the returned pointer, such as `IID_IXMLDOMDocument`
/// \param object receives a pointer to the object with one reference, which the caller releases; receives
///        null if the created object does not have the interface `riid`; unchanged after any other failure
/// \return `S_OK`; `E_NOINTERFACE` if the created object does not have the interface `riid`; `E_NOTIMPL` for
///         an unknown class; `E_FAIL` if `object` is null or if `DllMain` was not called with reason 1
/// \throw std::bad_alloc if memory runs out
HRESULT DllGetClassObject(const GUID& classId, const GUID& riid, void** object);

/// Does nothing. The host's module loader calls this function when it loads the library.
/// \return 1
int ylrxDelegatedLoadEntry(void);

/// Does nothing. The host's module loader calls this function when it unloads the library. Existing objects
/// stay valid, because the library stays in the process even after `dlclose`.
void ylrxDelegatedUnloadEntry(void);
}
#pragma GCC visibility pop
