// Writes all descriptions in a type library as text. Follows every pointer, and checks that the descriptions
// agree with each other.

#pragma once

#include "platform/description.h"
#include "platform/type_library_object.h"
#include "support/type_library_file.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <sstream>
#include <string>

namespace keltest
{

/// Returns the name that GetDocumentation returns for a member, an interface or a type library. If
/// GetDocumentation fails, returns the error code as text.
template <class Object>
std::wstring nameOf(Object& object, INT member)
{
    kel::Bstr name;
    wchar_t before[] = L"before", *documentation = before, *helpFile = before;
    DWORD context = 9;
    const HRESULT code = object.GetDocumentation(member, name.put(), &documentation, &context, &helpFile);
    require(!documentation && !helpFile && context == 0, "GetDocumentation returns only a name");
    return code == S_OK ? name.c_str() : std::to_wstring(code);
}

/// Returns a type in C++ notation. For a type that the type library does not describe, returns "other".
inline std::wstring typeName(ITypeLib& library, const TYPEDESC& type)
{
    static const std::map<VARTYPE, const wchar_t*> kNames{
        {VT_BSTR, L"wchar_t*"}, {VT_VARIANT, L"VARIANT"},   {VT_BOOL, L"short"},
        {VT_INT, L"int"},       {VT_UNKNOWN, L"IUnknown*"}, {VT_DISPATCH, L"IDispatch*"}};
    if (type.vt == VT_PTR)
        return typeName(library, *type.lptdesc) + L'*';
    if (const auto known = kNames.find(type.vt); known != kNames.end())
        return known->second;
    requireEqual<int>(type.vt, VT_USERDEFINED, "a type that is not built in is VT_USERDEFINED");
    requireAtMost<std::size_t>(type.hreftype, kelcom::kMaxTypes, "a type reference is within the limit");
    const bool isDescribed = type.hreftype < library.GetTypeInfoCount();
    return isDescribed ? nameOf(library, static_cast<INT>(type.hreftype)) : L"other";
}

/// Writes a line for a function: its identifier, and its declaration in C++.
inline void describe(ITypeLib& library, ITypeInfo& info, const FUNCDESC& function, std::wostream& out)
{
    constexpr UINT kRoom = kelcom::kMaxArguments + 2;
    std::array<kel::Bstr, kRoom> names;
    std::array<MEMBERID, kRoom> ids{};
    UINT count = 0;
    requireOk(info.GetNames(function.memid, names[0].put(), 1, &count), "GetNames of one name");
    require(count == 1 && !names[1], "GetNames returns one name if there is room for one");
    BSTR* const places = names[0].put();
    requireOk(info.GetNames(function.memid, places, kRoom, &count), "GetNames of all names");
    require(count >= 1 && count <= kRoom, "GetNames returns at least one name, and no more than fit");
    const bool areAllKnown = info.GetIDsOfNames(places, count, ids.data()) == S_OK;
    const auto unknown = std::count(ids.data(), ids.data() + count, DISPID_UNKNOWN);
    requireEqual(areAllKnown, unknown == 0, "GetIDsOfNames succeeds if and only if it knows all names");
    requireEqual(ids[0], function.memid, "GetIDsOfNames returns the function's identifier for its name");
    requireEqual(nameOf(info, function.memid), std::wstring(names[0].c_str()), "one name");
    const wchar_t* const prefix = function.invkind == INVOKE_PROPERTYPUT      ? L"put_"
                                  : function.invkind == INVOKE_PROPERTYPUTREF ? L"putref_"
                                  : function.invkind == INVOKE_PROPERTYGET    ? L"get_"
                                                                              : L"";
    out << function.memid << ' ' << prefix << names[0].c_str() << '(';

    require(function.cParams >= function.cParamsOpt && function.cParamsOpt >= 0, "cParamsOpt is in range");
    requireEqual<int>(function.elemdescFunc.tdesc.vt, VT_HRESULT, "a function returns an HRESULT");
    for (SHORT place = 0; place < function.cParams; ++place) {
        const ELEMDESC& parameter = function.lprgelemdescParam[place];
        const int flags = parameter.paramdesc.wParamFlags;
        const bool isResult = flags == (PARAMFLAG_FOUT | PARAMFLAG_FRETVAL);
        require(!isResult || place == function.cParams - 1, "the result is the last parameter");
        requireEqual<int>(isResult ? PARAMFLAG_FIN : flags & ~PARAMFLAG_FOPT, PARAMFLAG_FIN,
                          "an input has PARAMFLAG_FIN, and no other flag except PARAMFLAG_FOPT");
        out << (place == 0 ? L"" : L", ") << typeName(library, parameter.tdesc);
    }
    out << L")\n";
}

using EachFunction = std::function<void(ITypeInfo&, const FUNCDESC&)>;
inline void ignoreFunction(ITypeInfo&, const FUNCDESC&) {}

/// Describes a type library. Writes a line for each interface, and after it a line for each function of the
/// interface. The line for an interface has the first part of its identifier, its name, its kind, the number
/// of its functions, the size of its vtable, its flags and its version. The last line has the first part of
/// the library's identifier, its name and its version. \param use called with each function
inline std::wstring describe(ITypeLib& library, const EachFunction& use = ignoreFunction)
{
    std::wostringstream out;
    kel::ComPtr<ITypeInfo> info, sameInfo;
    kel::ComPtr<ITypeLib> sameLibrary;
    const UINT count = library.GetTypeInfoCount();
    for (UINT index = 0; index < count; ++index) {
        TYPEATTR* attributes = nullptr;
        TYPEKIND kind{};
        UINT sameIndex = 0;
        requireOk(library.GetTypeInfo(index, info.put()), "GetTypeInfo");
        requireOk(info->GetTypeAttr(&attributes), "GetTypeAttr");
        requireOk(library.GetTypeInfoType(index, &kind), "GetTypeInfoType");
        requireEqual<int>(kind, attributes->typekind, "GetTypeInfoType returns the kind in TYPEATTR");
        requireOk(library.GetTypeInfoOfGuid(attributes->guid, sameInfo.put()), "GetTypeInfoOfGuid");
        requireOk(sameInfo->GetContainingTypeLib(sameLibrary.put(), &sameIndex), "GetContainingTypeLib");
        requireEqual(sameIndex, index, "GetContainingTypeLib returns the index of the interface");
        require(sameLibrary.get() == &library, "GetContainingTypeLib returns the library");
        void* other = &library;
        require(info->QueryInterface(IID_IDispatch, &other) == E_NOINTERFACE && !other, "no IDispatch");
        const std::wstring name = nameOf(library, static_cast<INT>(index));
        requireEqual(nameOf(*info, MEMBERID_NIL), name, "the library and the interface return the same name");
        out << std::hex << attributes->guid.Data1 << std::dec << ' ' << name << ' ' << kind << ' '
            << attributes->cFuncs << ' ' << attributes->cbSizeVft << ' ' << attributes->wTypeFlags << ' '
            << attributes->wMajorVerNum << ' ' << attributes->wMinorVerNum << '\n';
        FUNCDESC* function = nullptr;
        for (UINT place = 0; place < attributes->cFuncs; ++place) {
            requireOk(info->GetFuncDesc(place, &function), "GetFuncDesc");
            const auto offset = static_cast<SHORT>((kelcom::kDispatchSlots + place) * kelcom::kSlotSize);
            requireEqual(function->oVft, offset, "oVft is the offset of the function's slot");
            describe(library, *info, *function, out);
            use(*info, *function);
            info->ReleaseFuncDesc(function);
        }
        require(info->GetFuncDesc(attributes->cFuncs, &function) == TYPE_E_ELEMENTNOTFOUND && !function,
                "beyond the last function, GetFuncDesc fails and returns null");
        info->ReleaseTypeAttr(attributes);
    }
    require(library.GetTypeInfo(count, sameInfo.put()) == TYPE_E_ELEMENTNOTFOUND && !sameInfo,
            "beyond the last interface, GetTypeInfo fails and returns null");
    for (const INT index : {-2, static_cast<INT>(count)})
        requireEqual(nameOf(library, index), std::to_wstring(TYPE_E_ELEMENTNOTFOUND), "wrong indices fail");
    TLIBATTR* attributes = nullptr;
    requireOk(library.GetLibAttr(&attributes), "GetLibAttr");
    out << std::hex << attributes->guid.Data1 << std::dec << ' ' << nameOf(library, -1) << ' '
        << attributes->wMajorVerNum << '.' << attributes->wMinorVerNum << '\n';
    library.ReleaseTLibAttr(attributes);
    return out.str();
}

} // namespace keltest
