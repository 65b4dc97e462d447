// Loads an interface's type information from the registered type library. Implements IDispatch with this type
// information.

#include "com/description_ptr.h"

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/dispatch_impl.h"
#include "KelXmlLib/guids.h"

#include <utility>

using kelxml::com::DescriptionPtr;

namespace
{

/// The number of vtable slots of each interface, including the slots of IDispatch.
constexpr std::pair<const GUID*, std::size_t> kSlots[] = {
    {&IID_IXMLDOMNode, 43},      {&IID_IXMLDOMDocument, 76}, {&IID_IXMLDOMElement, 52},
    {&IID_IXMLDOMAttribute, 46}, {&IID_IXMLDOMNodeList, 12}, {&IID_IXMLDOMNamedNodeMap, 17}};

/// Whether `typeInfo` describes more vtable slots than objects of this library have for `interface`. Calling
/// a slot that an object does not have would crash.
bool hasMoreSlotsThanObject(ITypeInfo& typeInfo, const GUID& interface)
{
    TYPEATTR* borrowed = nullptr;
    if (FAILED(typeInfo.GetTypeAttr(&borrowed)))
        return false;
    const DescriptionPtr<TYPEATTR> attributes(borrowed, {&typeInfo});
    for (const auto& [identifier, slots] : kSlots)
        if (*identifier == interface)
            return attributes->cbSizeVft > slots * sizeof(void*);
    return false;
}

} // namespace

HRESULT CComTypeInfoHolder::GetTI(LCID)
{
    if (m_pInfo)
        return S_OK;

    wchar_t path[KelTypelib::PathCapacity] = {};
    if (const HRESULT found = KelTypelib::GetTlbFilePath(*m_plibid, path); FAILED(found))
        return found;
    ITypeLib* library = nullptr; // borrowed from the type-library service
    if (const HRESULT loaded = KelTypelib::LoadTypeLib(path, &library); FAILED(loaded))
        return loaded;
    const HRESULT obtained = library->GetTypeInfoOfGuid(*m_pguid, m_pInfo.put());
    if (m_pInfo && hasMoreSlotsThanObject(*m_pInfo, *m_pguid)) {
        m_pInfo.reset();
        return TYPE_E_ELEMENTNOTFOUND;
    }
    if (FAILED(obtained) || !m_pInfo || m_pMap)
        return obtained;
    return LoadNameCache(m_pInfo.get());
}

HRESULT CComTypeInfoHolder::GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo)
{
    if (index != 0)
        return DISP_E_BADINDEX;
    if (!typeInfo)
        return E_POINTER;
    const HRESULT loaded = GetTI(locale);
    *typeInfo = kel::ComPtr<ITypeInfo>(m_pInfo).detach();
    return m_pInfo ? S_OK : loaded;
}

HRESULT CComTypeInfoHolder::GetIDsOfNames(wchar_t** names, UINT count, LCID locale, DISPID* identifiers)
{
    if (const HRESULT loaded = ensureLoaded(locale); !m_pInfo)
        return loaded;
    if (count == 1 && names && names[0] && identifiers) {
        if (const NameEntry* const entry = findName(names[0])) {
            *identifiers = entry->identifier;
            return S_OK;
        }
    }
    return m_pInfo->GetIDsOfNames(names, count, identifiers);
}

HRESULT CComTypeInfoHolder::Invoke(IDispatch* object, DISPID member, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument)
{
    if (const HRESULT loaded = ensureLoaded(locale); !m_pInfo)
        return loaded;
    return m_pInfo->Invoke(object, member, flags, parameters, result, exception, badArgument);
}

HRESULT CComTypeInfoHolder::ensureLoaded(LCID locale)
{
    return m_pInfo && m_pMap ? S_OK : GetTI(locale);
}
