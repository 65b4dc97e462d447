// Writes every description in a type library as text, following every pointer, and compares the descriptions
// with each other.

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

/// The name of a member, or of an interface, and nothing else; what is answered where there is none.
template <class Object>
std::wstring nameOf(Object& object, INT member)
{
    kel::Bstr name;
    wchar_t before[] = L"before", *documentation = before, *helpFile = before;
    DWORD context = 9;
    const HRESULT answer = object.GetDocumentation(member, name.put(), &documentation, &context, &helpFile);
    require(!documentation && !helpFile && context == 0);
    return answer == S_OK ? name.c_str() : std::to_wstring(answer);
}

/// A type in C++ notation; types that the library only names are "other".
inline std::wstring typeName(ITypeLib& library, const TYPEDESC& type)
{
    static const std::map<VARTYPE, const wchar_t*> kNames{
        {VT_BSTR, L"wchar_t*"}, {VT_VARIANT, L"VARIANT"},   {VT_BOOL, L"short"},
        {VT_INT, L"int"},       {VT_UNKNOWN, L"IUnknown*"}, {VT_DISPATCH, L"IDispatch*"}};
    if (type.vt == VT_PTR)
        return typeName(library, *type.lptdesc) + L'*';
    if (const auto known = kNames.find(type.vt); known != kNames.end())
        return known->second;
    require(type.vt == VT_USERDEFINED && type.hreftype <= kelcom::kMaxTypes);
    const bool isDescribed = type.hreftype < library.GetTypeInfoCount();
    return isDescribed ? nameOf(library, static_cast<INT>(type.hreftype)) : L"other";
}

/// Writes a function in a line: its identifier, and its declaration in C++.
inline void describe(ITypeLib& library, ITypeInfo& info, const FUNCDESC& function, std::wostream& out)
{
    constexpr UINT kRoom = kelcom::kMaxArguments + 2;
    std::array<kel::Bstr, kRoom> names;
    std::array<MEMBERID, kRoom> ids{};
    UINT count = 0;
    require(info.GetNames(function.memid, names[0].put(), 1, &count) == S_OK && count == 1 && !names[1]);
    BSTR* const places = names[0].put();
    require(info.GetNames(function.memid, places, kRoom, &count) == S_OK && count >= 1 && count <= kRoom);
    const bool areAllKnown = info.GetIDsOfNames(places, count, ids.data()) == S_OK;
    require(areAllKnown == (std::count(ids.data(), ids.data() + count, DISPID_UNKNOWN) == 0));
    require(ids[0] == function.memid && nameOf(info, function.memid) == names[0].c_str());
    const wchar_t* const prefix = function.invkind == INVOKE_PROPERTYPUT      ? L"put_"
                                  : function.invkind == INVOKE_PROPERTYPUTREF ? L"putref_"
                                  : function.invkind == INVOKE_PROPERTYGET    ? L"get_"
                                                                              : L"";
    out << function.memid << ' ' << prefix << names[0].c_str() << '(';

    require(function.cParams >= function.cParamsOpt && function.cParamsOpt >= 0);
    require(function.elemdescFunc.tdesc.vt == VT_HRESULT);
    for (SHORT place = 0; place < function.cParams; ++place) {
        const ELEMDESC& parameter = function.lprgelemdescParam[place];
        const int flags = parameter.paramdesc.wParamFlags;
        const bool isResult = flags == (PARAMFLAG_FOUT | PARAMFLAG_FRETVAL);
        require(isResult ? place == function.cParams - 1
                         : (flags | PARAMFLAG_FOPT) == (PARAMFLAG_FIN | PARAMFLAG_FOPT));
        out << (place == 0 ? L"" : L", ") << typeName(library, parameter.tdesc);
    }
    out << L")\n";
}

using EachFunction = std::function<void(ITypeInfo&, const FUNCDESC&)>;
inline void pass(ITypeInfo&, const FUNCDESC&) {}

/// An interface in a line: the start of its identifier, its name, kind, functions, bytes of slots, flags,
/// version; then its functions.
/// \param use called with each function
inline std::wstring describe(ITypeLib& library, const EachFunction& use = pass)
{
    std::wostringstream out;
    kel::ComPtr<ITypeInfo> info, sameInfo;
    kel::ComPtr<ITypeLib> sameLibrary;
    const UINT count = library.GetTypeInfoCount();
    for (UINT index = 0; index < count; ++index) {
        TYPEATTR* attributes = nullptr;
        TYPEKIND kind{};
        UINT sameIndex = 0;
        require(library.GetTypeInfo(index, info.put()) == S_OK && info->GetTypeAttr(&attributes) == S_OK);
        require(library.GetTypeInfoType(index, &kind) == S_OK && kind == attributes->typekind);
        require(library.GetTypeInfoOfGuid(attributes->guid, sameInfo.put()) == S_OK);
        require(sameInfo->GetContainingTypeLib(sameLibrary.put(), &sameIndex) == S_OK);
        require(sameLibrary.get() == &library && sameIndex == index);
        void* other = &library;
        require(info->QueryInterface(IID_IDispatch, &other) == E_NOINTERFACE && !other);
        const std::wstring name = nameOf(library, static_cast<INT>(index));
        require(nameOf(*info, MEMBERID_NIL) == name);
        out << std::hex << attributes->guid.Data1 << std::dec << ' ' << name << ' ' << kind << ' '
            << attributes->cFuncs << ' ' << attributes->cbSizeVft << ' ' << attributes->wTypeFlags << ' '
            << attributes->wMajorVerNum << ' ' << attributes->wMinorVerNum << '\n';
        FUNCDESC* function = nullptr;
        for (UINT place = 0; place < attributes->cFuncs; ++place) {
            require(info->GetFuncDesc(place, &function) == S_OK);
            require(function->oVft ==
                    static_cast<SHORT>((kelcom::kDispatchSlots + place) * kelcom::kSlotSize));
            describe(library, *info, *function, out);
            use(*info, *function);
            info->ReleaseFuncDesc(function);
        }
        require(info->GetFuncDesc(attributes->cFuncs, &function) == TYPE_E_ELEMENTNOTFOUND && !function);
        info->ReleaseTypeAttr(attributes);
    }
    require(library.GetTypeInfo(count, sameInfo.put()) == TYPE_E_ELEMENTNOTFOUND && !sameInfo);
    for (const INT index : {-2, static_cast<INT>(count)})
        require(nameOf(library, index) == std::to_wstring(TYPE_E_ELEMENTNOTFOUND));
    TLIBATTR* attributes = nullptr;
    require(library.GetLibAttr(&attributes) == S_OK);
    out << std::hex << attributes->guid.Data1 << std::dec << ' ' << nameOf(library, -1) << ' '
        << attributes->wMajorVerNum << '.' << attributes->wMinorVerNum << '\n';
    library.ReleaseTLibAttr(attributes);
    return out.str();
}

} // namespace keltest
