// Implements ITypeLib by reading the description of a type library.

#include "platform/type_library_object.h"

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "platform/type_info_object.h"

namespace kelcom
{
namespace
{

HRESULT createTypeInfo(TypeLibrary& library, const InterfaceDescription& interface, ITypeInfo** typeInfo)
{
    kel::ComPtr<ITypeInfo> created(new TypeInfo(library, interface));
    *typeInfo = created.detach();
    return S_OK;
}

} // namespace

HRESULT documentationOf(const std::wstring* name, BSTR* nameOut, BSTR* documentation, DWORD* helpContext,
                        BSTR* helpFile)
{
    if (nameOut)
        *nameOut = nullptr;
    if (documentation)
        *documentation = nullptr;
    if (helpContext)
        *helpContext = 0;
    if (helpFile)
        *helpFile = nullptr;
    if (!name)
        return TYPE_E_ELEMENTNOTFOUND;
    if (nameOut)
        *nameOut = SysAllocStringLen(name->data(), static_cast<UINT>(name->size()));
    return nameOut && !*nameOut ? E_OUTOFMEMORY : S_OK;
}

HRESULT TypeLibrary::QueryInterface(const GUID& riid, void** ppv)
{
    return queryInterface<ITypeLib>(this, IID_ITypeLib, riid, ppv);
}

ULONG TypeLibrary::Release()
{
    const ULONG remaining = --m_count;
    if (remaining == 0)
        delete this;
    return remaining;
}

UINT TypeLibrary::GetTypeInfoCount()
{
    return static_cast<UINT>(interfaces().size());
}

HRESULT TypeLibrary::GetTypeInfo(UINT index, ITypeInfo** typeInfo)
{
    if (!typeInfo)
        return E_POINTER;
    *typeInfo = nullptr;
    return index < interfaces().size() ? createTypeInfo(*this, interfaces()[index], typeInfo)
                                       : TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TypeLibrary::GetTypeInfoType(UINT index, TYPEKIND* kind)
{
    if (!kind)
        return E_POINTER;
    if (index >= interfaces().size())
        return TYPE_E_ELEMENTNOTFOUND;
    *kind = interfaces()[index].attributes.typekind;
    return S_OK;
}

HRESULT TypeLibrary::GetTypeInfoOfGuid(const GUID& guid, ITypeInfo** typeInfo)
{
    if (!typeInfo)
        return E_POINTER;
    *typeInfo = nullptr;
    for (const InterfaceDescription& interface : interfaces())
        if (interface.type->iid == guid)
            return createTypeInfo(*this, interface, typeInfo);
    return TYPE_E_ELEMENTNOTFOUND;
}

HRESULT TypeLibrary::GetLibAttr(TLIBATTR** attributes)
{
    if (!attributes)
        return E_POINTER;
    *attributes = lend(m_description->attributes);
    return S_OK;
}

HRESULT TypeLibrary::GetTypeComp(ITypeComp**)
{
    return E_NOTIMPL;
}

HRESULT TypeLibrary::GetDocumentation(INT index, BSTR* name, BSTR* documentation, DWORD* helpContext,
                                      BSTR* helpFile)
{
    const std::wstring* found = nullptr;
    if (index == -1)
        found = &m_description->name;
    else if (index >= 0 && static_cast<std::size_t>(index) < interfaces().size())
        found = &interfaces()[static_cast<std::size_t>(index)].type->name;
    return documentationOf(found, name, documentation, helpContext, helpFile);
}

HRESULT TypeLibrary::IsName(wchar_t*, ULONG, INT*)
{
    return E_NOTIMPL;
}

HRESULT TypeLibrary::FindName(wchar_t*, ULONG, ITypeInfo**, MEMBERID*, USHORT*)
{
    return E_NOTIMPL;
}

// This function frees nothing, because `GetLibAttr` returns a pointer into the description of the type
// library.
void TypeLibrary::ReleaseTLibAttr(TLIBATTR*) {}

} // namespace kelcom
