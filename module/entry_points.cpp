// The entry points of the library, and the object map, which lists the classes that hosts can instantiate.

#include "KelXmlLib/module.h"

#include "KelComWrapper/com_ptr.h"
#include "KelXmlLib/document.h"
#include "KelXmlLib/guids.h"

namespace
{

constexpr unsigned int kProcessAttach = 1;

const ObjectMapEntry objectMap[] = {
    {&CLSID_DOMDocument, {}, &CMorvXMLDOMDocument::CreateMe, {}},
    {},
};

} // namespace

const ObjectMapEntry* _xmlModule = nullptr;

int DllMain(void*, unsigned int reason, void*)
{
    // If `_xmlModule` is already set, do not write it again, because another thread may be reading it.
    if (reason == kProcessAttach && _xmlModule != objectMap)
        _xmlModule = objectMap;
    return 1;
}

HRESULT DllGetClassObject(const GUID& classId, const GUID& riid, void** object)
{
    if (!object || !_xmlModule)
        return E_FAIL;
    for (const ObjectMapEntry* entry = _xmlModule; entry->creator; ++entry) {
        if (*entry->classId != classId)
            continue;
        void* created = nullptr;
        entry->creator(nullptr, riid, &created);
        if (!created)
            return E_OUTOFMEMORY;
        const auto unknown = kel::ComPtr<IUnknown>::adopt(static_cast<IUnknown*>(created));
        return unknown->QueryInterface(riid, object);
    }
    return E_NOTIMPL;
}

int ylrxDelegatedLoadEntry()
{
    return 1;
}

void ylrxDelegatedUnloadEntry() {}
