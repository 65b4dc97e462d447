// Uses every description of a type library, so that a wrong pointer in one does not stay unnoticed, and holds
// them against each other.

#pragma once

#include "platform/description.h"
#include "platform/type_library.h"
#include "support/type_library_file.h"

#include <array>

namespace keltest
{

using Names = std::array<kel::Bstr, kelcom::kMaxArguments + 2>;

/// \param require is given what has to hold
/// \param use is given each function, and the names of it and its parameters
template <class Require, class Use>
void walkFunction(ITypeInfo& info, UINT index, Require require, Use use)
{
    FUNCDESC* function = nullptr;
    require(info.GetFuncDesc(index, &function) == S_OK);
    require(function->oVft == static_cast<SHORT>((kelcom::kDispatchSlots + index) * kelcom::kSlotSize));
    require(function->cParams >= function->cParamsOpt && function->cParamsOpt >= 0);
    require(function->elemdescFunc.tdesc.vt == VT_HRESULT);
    for (SHORT place = 0; place < function->cParams; ++place) {
        const TYPEDESC* type = &function->lprgelemdescParam[place].tdesc;
        while (type->vt == VT_PTR)
            type = type->lptdesc;
        require(type->vt != VT_EMPTY && (type->vt != VT_USERDEFINED || type->hreftype <= kelcom::kMaxTypes));
    }
    Names names;
    UINT count = 0;
    require(info.GetNames(function->memid, names[0].put(), static_cast<UINT>(names.size()), &count) == S_OK);
    require(count >= 1 && count <= names.size() && names[count - 1]);
    require(nameOf(info, function->memid) == names[0].c_str());
    require(idOf(info, names[0].c_str()) == function->memid);
    use(info, *function, names);
    info.ReleaseFuncDesc(function);
}

/// \return how many functions the library describes
template <class Require, class Use>
std::size_t walkLibrary(ITypeLib& library, Require require, Use use)
{
    std::size_t functions = 0;
    const UINT count = library.GetTypeInfoCount();
    kel::ComPtr<ITypeInfo> info, sameInfo;
    kel::ComPtr<ITypeLib> sameLibrary;
    kel::Bstr name;
    for (UINT index = 0; index < count; ++index) {
        TYPEATTR* attributes = nullptr;
        TYPEKIND kind{};
        UINT sameIndex = 0;
        require(library.GetTypeInfo(index, info.put()) == S_OK && info->GetTypeAttr(&attributes) == S_OK);
        require(library.GetTypeInfoType(index, &kind) == S_OK && kind == attributes->typekind);
        require(library.GetTypeInfoOfGuid(attributes->guid, sameInfo.put()) == S_OK);
        require(sameInfo->GetContainingTypeLib(sameLibrary.put(), &sameIndex) == S_OK);
        require(sameLibrary.get() == &library && sameIndex == index);
        for (UINT function = 0; function < attributes->cFuncs; ++function, ++functions)
            walkFunction(*info, function, require, use);
        FUNCDESC* none = nullptr;
        require(info->GetFuncDesc(attributes->cFuncs, &none) == TYPE_E_ELEMENTNOTFOUND && !none);
        require(library.GetDocumentation(static_cast<INT>(index), name.put(), nullptr, nullptr, nullptr) ==
                S_OK);
        require(nameOf(*info, MEMBERID_NIL) == name.c_str());
        info->ReleaseTypeAttr(attributes);
    }
    require(library.GetTypeInfo(count, sameInfo.put()) == TYPE_E_ELEMENTNOTFOUND && !sameInfo);
    TLIBATTR* attributes = nullptr;
    require(library.GetLibAttr(&attributes) == S_OK);
    require(library.GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr) == S_OK && name);
    library.ReleaseTLibAttr(attributes);
    return functions;
}

} // namespace keltest
