// Computes the structures that hosts receive (FUNCDESC, TYPEATTR), the lookup tables, and the descriptions of
// calls for libffi.

#include "platform/description.h"

#include <algorithm>

namespace kelcom
{
namespace
{

constexpr wchar_t foldedLetter(wchar_t letter)
{
    return letter >= L'A' && letter <= L'Z' ? letter - L'A' + L'a' : letter;
}

/// Returns libffi's type for a VARIANT that is passed by value. The static object `type` contains the size
/// from the start. Otherwise libffi would compute the size and write it to `type`, which would be a data race
/// when several threads prepare calls.
ffi_type* variantType()
{
    static ffi_type* members[] = {&ffi_type_uint64, &ffi_type_uint64, &ffi_type_uint64, nullptr};
    static ffi_type type = {sizeof(VARIANT), alignof(VARIANT), FFI_TYPE_STRUCT, members};
    return &type;
}

ffi_type* ffiTypeOf(const ValueType& type)
{
    switch (type.tag) {
    case VT_VARIANT:
        return variantType();
    case VT_BOOL:
        return &ffi_type_sint16;
    case VT_I4:
        return &ffi_type_sint32;
    default:
        return &ffi_type_pointer;
    }
}

TYPEDESC pointerTo(const TYPEDESC& target)
{
    TYPEDESC pointer{};
    pointer.lptdesc = lend(target);
    pointer.vt = VT_PTR;
    return pointer;
}

ELEMDESC elementOf(const Parameter& parameter, bool isResult)
{
    const ValueType& type = *parameter.type;
    const TYPEDESC& passed = type.isInterface() && type.isDeclared() ? type.pointer : type.description;
    ELEMDESC element{};
    element.tdesc = isResult ? pointerTo(passed) : passed;
    const int flags = isResult ? PARAMFLAG_FOUT | PARAMFLAG_FRETVAL
                               : PARAMFLAG_FIN | (parameter.isOptional ? PARAMFLAG_FOPT : 0);
    element.paramdesc.wParamFlags = static_cast<USHORT>(flags);
    return element;
}

/// Fills the FUNCDESC of a function. The FUNCDESC describes the virtual function in the vtable slot. So
/// `cParams` also counts the pointer to the result, and `elemdescFunc` says that the function returns an
/// HRESULT.
void describe(Function& function, std::size_t slot)
{
    for (const Parameter& argument : function.arguments)
        function.elements.push_back(elementOf(argument, false));
    if (function.result)
        function.elements.push_back(elementOf(*function.result, true));
    function.required = static_cast<std::size_t>(
        std::count_if(function.arguments.begin(), function.arguments.end(),
                      [](const Parameter& argument) { return !argument.isOptional; }));

    FUNCDESC& description = function.description;
    description.memid = function.id;
    description.lprgelemdescParam = function.elements.empty() ? nullptr : function.elements.data();
    description.funckind = FUNC_PUREVIRTUAL;
    description.invkind = function.kind;
    description.callconv = CC_CDECL;
    description.cParams = static_cast<SHORT>(function.elements.size());
    description.cParamsOpt = static_cast<SHORT>(function.arguments.size() - function.required);
    description.oVft = static_cast<SHORT>(slot * kSlotSize);
    description.elemdescFunc.tdesc.vt = VT_HRESULT;
}

bool prepareCall(Function& function)
{
    std::size_t count = 0;
    function.ffiTypes[count++] = &ffi_type_pointer;
    for (const Parameter& argument : function.arguments)
        function.ffiTypes[count++] = ffiTypeOf(*argument.type);
    if (function.result)
        function.ffiTypes[count++] = &ffi_type_pointer;
    return ffi_prep_cif(&function.cif, FFI_DEFAULT_ABI, static_cast<unsigned>(count), &ffi_type_sint32,
                        function.ffiTypes.data()) == FFI_OK;
}

void index(InterfaceDescription& interface)
{
    for (const Function* function : interface.functions) {
        auto& member = interface.members[function->id];
        if (member.empty())
            interface.byName.emplace_back(folded(function->name), function);
        member.push_back(function);
    }
    std::sort(interface.byName.begin(), interface.byName.end());
}

TYPEATTR attributesOf(const InterfaceDescription& interface, const TLIBATTR& library)
{
    TYPEATTR attributes{};
    attributes.guid = interface.type->iid;
    attributes.memidConstructor = MEMBERID_NIL;
    attributes.memidDestructor = MEMBERID_NIL;
    attributes.cbSizeInstance = sizeof(void*);
    attributes.typekind = TKIND_DISPATCH;
    attributes.cFuncs = static_cast<WORD>(interface.functions.size());
    attributes.cbSizeVft = static_cast<WORD>((kDispatchSlots + interface.functions.size()) * kSlotSize);
    attributes.cbAlignment = alignof(void*);
    attributes.wTypeFlags = TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE;
    attributes.wMajorVerNum = library.wMajorVerNum;
    attributes.wMinorVerNum = library.wMinorVerNum;
    return attributes;
}

/// Gives each declared type a number. If the type is one of `library.interfaces`, its number is its index for
/// `ITypeLib::GetTypeInfo`. All other types have higher numbers.
void numberTypes(LibraryDescription& library)
{
    auto next = static_cast<HREFTYPE>(library.interfaces.size());
    for (ValueType& type : library.types)
        if (type.isDeclared())
            type.description.hreftype = next++;
    for (std::size_t index = 0; index < library.interfaces.size(); ++index)
        library.interfaces[index].type->description.hreftype = static_cast<HREFTYPE>(index);
}

} // namespace

std::wstring folded(std::wstring_view name)
{
    std::wstring result(name);
    std::transform(result.begin(), result.end(), result.begin(), foldedLetter);
    return result;
}

bool isSameName(std::wstring_view left, std::wstring_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](wchar_t a, wchar_t b) { return foldedLetter(a) == foldedLetter(b); });
}

std::pair<InterfaceDescription::Functions, InterfaceDescription::Functions>
InterfaceDescription::member(MEMBERID id) const
{
    const auto it = members.find(id);
    if (it == members.end())
        return {};
    const auto& found = it->second;
    return {found.data(), found.data() + found.size()};
}

const Function* InterfaceDescription::firstOf(MEMBERID id) const
{
    const auto [first, last] = member(id);
    return first == last ? nullptr : *first;
}

const Function* InterfaceDescription::firstNamed(std::wstring_view name) const
{
    const std::wstring sought = folded(name);
    const auto it =
        std::lower_bound(byName.begin(), byName.end(), sought,
                         [](const auto& entry, const std::wstring& key) { return entry.first < key; });
    return it == byName.end() || it->first != sought ? nullptr : it->second;
}

bool isConsistent(const Function& function)
{
    const auto& arguments = function.arguments;
    if (function.kind == INVOKE_PROPERTYGET && !function.result)
        return false;
    if (function.isPut() && (function.result || arguments.empty() || arguments.back().isOptional))
        return false;
    return std::is_sorted(
        arguments.begin(), arguments.end(),
        [](const Parameter& left, const Parameter& right) { return left.isOptional < right.isOptional; });
}

bool areCompatible(const Function& left, const Function& right)
{
    const bool isSameMember = left.id == right.id;
    if (isSameMember != isSameName(left.name, right.name))
        return false;
    return !isSameMember ||
           (left.kind != right.kind && left.kind != INVOKE_FUNC && right.kind != INVOKE_FUNC);
}

bool complete(LibraryDescription& library)
{
    numberTypes(library);
    for (ValueType& type : library.types)
        type.pointer = pointerTo(type.description);
    for (InterfaceDescription& interface : library.interfaces) {
        for (std::size_t index = 0; index < interface.functions.size(); ++index) {
            Function& function = *interface.functions[index];
            if (function.description.oVft != 0)
                continue; // inherited, and already described for an earlier interface
            describe(function, kDispatchSlots + index);
            if (!prepareCall(function))
                return false;
        }
        index(interface);
        interface.attributes = attributesOf(interface, library.attributes);
    }
    return true;
}

} // namespace kelcom
