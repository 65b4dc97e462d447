// Any bytes as a type library, as they are and under a digest that fits: refused as the service refuses them,
// or a library all of whose descriptions can be read and whose every function can be called.

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typelib.h"
#include "platform/type_library.h"
#include "platform/type_library_reader.h"
#include "support.h"
#include "support/type_library_file.h"

#include <array>
#include <vector>

using namespace kelcom;
using kel::Bstr;
using kel::ComPtr;
using kelfuzz::require;

namespace
{

/// Every slot of the object that is called: the caller clears the stack, so one fits all.
HRESULT answerNothing()
{
    return S_FALSE;
}

VARIANT variantOf(VARTYPE type, std::int64_t number)
{
    VARIANT value{};
    value.vt = type;
    value.llVal = number;
    return value;
}

void call(ITypeInfo& info, const FUNCDESC& function, std::vector<VARIANT> arguments)
{
    static const auto kTable = [] {
        std::array<HRESULT (*)(), kDispatchSlots + kMaxFunctions> slots;
        slots.fill(answerNothing);
        return slots;
    }();
    const auto* instance = kTable.data();
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), &put, static_cast<UINT>(arguments.size()),
                          function.invkind >= INVOKE_PROPERTYPUT ? 1U : 0U};
    VARIANT result = variantOf(VT_I4, 1);
    const HRESULT answer = info.Invoke(&instance, function.memid, static_cast<WORD>(function.invkind),
                                       &parameters, &result, nullptr, nullptr);
    require(FAILED(answer) || (answer == S_FALSE && result.vt == VT_EMPTY));
}

/// With every number of arguments; those that are no objects are made of one value each time.
void callWithEverything(ITypeInfo& info, const FUNCDESC& function)
{
    static const Bstr kText(L"-7.5");
    const VARIANT values[] = {variantOf(VT_EMPTY, 0), variantOf(VT_I8, 7), kelfuzz::variantOf(kText),
                              variantOf(VT_ERROR, DISP_E_PARAMNOTFOUND)};
    const auto isObject = [&function](std::size_t place) {
        const VARTYPE type = function.lprgelemdescParam[place].tdesc.vt;
        return type == VT_PTR || type == VT_UNKNOWN || type == VT_DISPATCH;
    };
    const unsigned count = kelfuzz::argumentsOf(function);
    for (const VARIANT& value : values)
        for (unsigned given = count - static_cast<unsigned>(function.cParamsOpt); given <= count; ++given) {
            std::vector<VARIANT> arguments(given, value);
            for (unsigned place = 0; place < given; ++place)
                if (isObject(place))
                    arguments[given - 1 - place] = variantOf(VT_DISPATCH, 0);
            call(info, function, std::move(arguments));
        }
}

void checkType(const TYPEDESC& description)
{
    const TYPEDESC* type = &description;
    while (type->vt == VT_PTR)
        type = type->lptdesc;
    require(type->vt != VT_EMPTY && (type->vt != VT_USERDEFINED || type->hreftype <= kMaxTypes));
}

void checkFunction(ITypeInfo& info, UINT index, std::size_t slot)
{
    FUNCDESC* function = nullptr;
    require(info.GetFuncDesc(index, &function) == S_OK);
    require(function->oVft == static_cast<SHORT>(slot * kSlotSize));
    require(function->cParams >= function->cParamsOpt && function->cParamsOpt >= 0);
    for (SHORT place = 0; place < function->cParams; ++place)
        checkType(function->lprgelemdescParam[place].tdesc);

    std::array<Bstr, kMaxArguments + 2> names;
    UINT count = 0;
    require(info.GetNames(function->memid, reinterpret_cast<BSTR*>(names.data()),
                          static_cast<UINT>(names.size()), &count) == S_OK);
    require(count >= 1 && count <= names.size() && names[count - 1]);
    require(keltest::nameOf(info, function->memid) == names[0].c_str());
    require(keltest::idOf(info, names[0].c_str()) == function->memid);
    callWithEverything(info, *function);
    info.ReleaseFuncDesc(function);
}

void checkInterface(ITypeLib& library, UINT index)
{
    ComPtr<ITypeInfo> info;
    ComPtr<ITypeInfo> sameInfo;
    ComPtr<ITypeLib> sameLibrary;
    TYPEATTR* attributes = nullptr;
    TYPEKIND kind{};
    UINT sameIndex = 0;
    require(library.GetTypeInfo(index, info.put()) == S_OK && info->GetTypeAttr(&attributes) == S_OK);
    require(library.GetTypeInfoType(index, &kind) == S_OK && kind == attributes->typekind);
    require(library.GetTypeInfoOfGuid(attributes->guid, sameInfo.put()) == S_OK);
    require(sameInfo->GetContainingTypeLib(sameLibrary.put(), &sameIndex) == S_OK);
    require(sameLibrary.get() == &library && sameIndex == index);
    for (UINT function = 0; function < attributes->cFuncs; ++function)
        checkFunction(*info, function, kDispatchSlots + function);
    FUNCDESC* none = nullptr;
    require(info->GetFuncDesc(attributes->cFuncs, &none) == TYPE_E_ELEMENTNOTFOUND && !none);

    Bstr name;
    require(library.GetDocumentation(static_cast<INT>(index), name.put(), nullptr, nullptr, nullptr) == S_OK);
    require(keltest::nameOf(*info, MEMBERID_NIL) == name.c_str());
    info->ReleaseTypeAttr(attributes);
}

void check(const QByteArray& contents)
{
    auto description = readTypeLibrary(contents);
    if (!description) {
        static kelfuzz::MemoryFile file;
        file.write(contents);
        ITypeLib* untouched = nullptr;
        require(KelTypelib::LoadTypeLib(file.path().c_str(), &untouched) == TYPE_E_INVDATAREAD && !untouched);
        return;
    }
    // Not from the service, which keeps every library for good.
    const ComPtr<ITypeLib> library(new TypeLibrary(std::move(description)));
    const UINT count = library->GetTypeInfoCount();
    for (UINT index = 0; index < count; ++index)
        checkInterface(*library, index);
    ComPtr<ITypeInfo> none;
    require(library->GetTypeInfo(count, none.put()) == TYPE_E_ELEMENTNOTFOUND && !none);
    TLIBATTR* attributes = nullptr;
    Bstr name;
    require(library->GetLibAttr(&attributes) == S_OK);
    require(library->GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr) == S_OK && name);
    library->ReleaseTLibAttr(attributes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    check(bytes);
    check(keltest::stamped(bytes));
    return 0;
}
