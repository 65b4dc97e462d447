// Implements ITypeInfo by reading the description of an interface.

#include "platform/type_info_object.h"

#include "KelComWrapper/bstr.h"
#include "platform/invoke.h"

#include <algorithm>
#include <cwchar>

namespace kelcom
{
namespace
{

/// Returns the name of a function, then the names of its parameters, then the name of its result. Leaves out
/// the parameter for the value of a property put, because hosts pass the value as `DISPID_PROPERTYPUT`, not
/// by name.
std::vector<const std::wstring*> namesOf(const Function& function)
{
    std::vector<const std::wstring*> names{&function.name};
    for (const Parameter& argument : function.arguments)
        names.push_back(&argument.name);
    if (function.isPut())
        names.pop_back();
    if (function.result)
        names.push_back(&function.result->name);
    return names;
}

/// Returns the position of the parameter with this name, or `DISPID_UNKNOWN` if the member has no parameter
/// with this name.
MEMBERID positionOf(const InterfaceDescription& interface, MEMBERID member, std::wstring_view name)
{
    const auto [first, last] = interface.member(member);
    for (auto function = first; function != last; ++function) {
        const auto& arguments = (*function)->arguments;
        const std::size_t named = arguments.size() - ((*function)->isPut() ? 1 : 0);
        for (std::size_t position = 0; position < named; ++position)
            if (isSameName(arguments[position].name, name))
                return static_cast<MEMBERID>(position);
    }
    return DISPID_UNKNOWN;
}

} // namespace

HRESULT TypeInfo::QueryInterface(const GUID& riid, void** ppv)
{
    return queryInterface<ITypeInfo>(this, IID_ITypeInfo, riid, ppv);
}

ULONG TypeInfo::Release()
{
    const ULONG remaining = --m_count;
    if (remaining == 0)
        delete this;
    return remaining;
}

HRESULT TypeInfo::GetTypeAttr(TYPEATTR** attributes)
{
    if (!attributes)
        return E_POINTER;
    *attributes = lend(m_interface.attributes);
    return S_OK;
}

HRESULT TypeInfo::GetFuncDesc(UINT index, FUNCDESC** description)
{
    if (!description)
        return E_POINTER;
    *description = nullptr;
    if (index >= m_interface.functions.size())
        return TYPE_E_ELEMENTNOTFOUND;
    *description = &m_interface.functions[index]->description;
    return S_OK;
}

HRESULT TypeInfo::GetNames(MEMBERID member, BSTR* names, UINT room, UINT* count)
{
    if (!names || !count)
        return E_POINTER;
    *count = 0;
    const Function* const function = m_interface.firstOf(member);
    if (!function)
        return TYPE_E_ELEMENTNOTFOUND;
    const std::vector<const std::wstring*> known = namesOf(*function);
    const std::size_t copied = std::min<std::size_t>(room, known.size());
    std::vector<kel::Bstr> copies;
    copies.reserve(copied);
    for (std::size_t index = 0; index < copied; ++index)
        if (!copies.emplace_back(known[index]->c_str()))
            return E_OUTOFMEMORY;
    for (std::size_t index = 0; index < copied; ++index)
        names[index] = copies[index].detach();
    *count = static_cast<UINT>(copied);
    return S_OK;
}

HRESULT TypeInfo::GetIDsOfNames(wchar_t** names, UINT count, MEMBERID* identifiers)
{
    if (!names || !identifiers)
        return E_POINTER;
    if (count == 0)
        return E_INVALIDARG;
    std::fill_n(identifiers, count, DISPID_UNKNOWN);
    // The names of members and parameters have at most `kMaxNameLength` characters. A longer name cannot
    // match, so `view` reads at most one character beyond this length.
    const auto view = [](const wchar_t* name) {
        return name ? std::wstring_view(name, wcsnlen(name, kMaxNameLength + 1)) : std::wstring_view();
    };
    const Function* const function = m_interface.firstNamed(view(names[0]));
    if (!function)
        return DISP_E_UNKNOWNNAME;
    identifiers[0] = function->id;
    for (UINT index = 1; index < count; ++index)
        identifiers[index] = positionOf(m_interface, function->id, view(names[index]));
    const bool areAllKnown =
        std::find(identifiers + 1, identifiers + count, DISPID_UNKNOWN) == identifiers + count;
    return areAllKnown ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT TypeInfo::Invoke(void* instance, MEMBERID member, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                         EXCEPINFO* exception, UINT* badArgument)
{
    return invoke(m_interface, instance, member, flags, parameters, {result, exception, badArgument});
}

HRESULT TypeInfo::GetDocumentation(MEMBERID member, BSTR* name, BSTR* documentation, DWORD* helpContext,
                                   BSTR* helpFile)
{
    const std::wstring* found = &m_interface.type->name;
    if (member != MEMBERID_NIL) {
        const Function* const function = m_interface.firstOf(member);
        found = function ? &function->name : nullptr;
    }
    return documentationOf(found, name, documentation, helpContext, helpFile);
}

HRESULT TypeInfo::GetContainingTypeLib(ITypeLib** library, UINT* index)
{
    if (!library)
        return E_POINTER;
    if (index)
        *index = m_interface.type->description.hreftype;
    *library = kel::ComPtr<ITypeLib>(m_library.get()).detach();
    return S_OK;
}

// These functions free nothing: `GetTypeAttr` and `GetFuncDesc` return pointers into the description of the
// type library, and this object keeps the type library alive.
void TypeInfo::ReleaseTypeAttr(TYPEATTR*) {}
void TypeInfo::ReleaseFuncDesc(FUNCDESC*) {}
void TypeInfo::ReleaseVarDesc(VARDESC*) {}

// The methods below are not implemented, because hosts do not need them for interfaces that have only virtual
// functions.
HRESULT TypeInfo::GetTypeComp(ITypeComp**)
{
    return E_NOTIMPL;
}
HRESULT TypeInfo::GetVarDesc(UINT, VARDESC**)
{
    return E_NOTIMPL;
}
HRESULT TypeInfo::GetRefTypeOfImplType(UINT, HREFTYPE*)
{
    return E_NOTIMPL;
}
HRESULT TypeInfo::GetImplTypeFlags(UINT, INT*)
{
    return E_NOTIMPL;
}
HRESULT TypeInfo::GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*)
{
    return E_NOTIMPL;
}
HRESULT TypeInfo::GetRefTypeInfo(HREFTYPE, ITypeInfo**)
{
    return E_NOTIMPL;
}
HRESULT TypeInfo::AddressOfMember(MEMBERID, INVOKEKIND, void**)
{
    return E_NOTIMPL;
}
HRESULT TypeInfo::CreateInstance(IUnknown*, const GUID&, void**)
{
    return E_NOTIMPL;
}
HRESULT TypeInfo::GetMops(MEMBERID, BSTR*)
{
    return E_NOTIMPL;
}

} // namespace kelcom
