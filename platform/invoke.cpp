// Calls a member by its identifier: finds the function of the member, converts the arguments to the types of
// the function's parameters, calls the function through its vtable slot, and returns the function's result.

#include "platform/invoke.h"

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/variant_owner.h"
#include "platform/coerce.h"

#include <algorithm>
#include <climits>

namespace kelcom
{
namespace
{

/// Marks a parameter for which the caller passed no argument. No argument in `rgvarg` has this index.
constexpr UINT kNoArgument = UINT_MAX;

/// For each parameter, the index of its argument in `rgvarg`, or `kNoArgument`.
using ArgumentIndexes = std::array<UINT, kMaxArguments>;

/// Holds one argument or result of any type.
union Storage {
    VARIANT variant;
    void* pointer;
    BSTR text;
    IUnknown* object;
    IDispatch* dispatch;
    std::int32_t integer;
    VARIANT_BOOL boolean;
};

/// Sets `kinds` to the kinds of function that the flags allow, with the preferred kind first. If the flags
/// allow only one kind, both entries of `kinds` are that kind.
/// \return false if the flags are invalid
bool kindsOf(WORD flags, std::array<INVOKEKIND, 2>& kinds)
{
    switch (flags) {
    case DISPATCH_METHOD:
        kinds = {INVOKE_FUNC, INVOKE_FUNC};
        return true;
    case DISPATCH_PROPERTYGET:
        kinds = {INVOKE_PROPERTYGET, INVOKE_PROPERTYGET};
        return true;
    case DISPATCH_METHOD | DISPATCH_PROPERTYGET:
        kinds = {INVOKE_FUNC, INVOKE_PROPERTYGET};
        return true;
    case DISPATCH_PROPERTYPUT:
        kinds = {INVOKE_PROPERTYPUT, INVOKE_PROPERTYPUT};
        return true;
    case DISPATCH_PROPERTYPUTREF:
        kinds = {INVOKE_PROPERTYPUTREF, INVOKE_PROPERTYPUTREF};
        return true;
    case DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF:
        kinds = {INVOKE_PROPERTYPUT, INVOKE_PROPERTYPUTREF};
        return true;
    default:
        return false;
    }
}

const Function* functionFor(const InterfaceDescription& interface, MEMBERID member, WORD flags)
{
    std::array<INVOKEKIND, 2> kinds{};
    if (!kindsOf(flags, kinds))
        return nullptr;
    const auto [first, last] = interface.member(member);
    for (const INVOKEKIND kind : kinds)
        for (auto function = first; function != last; ++function)
            if ((*function)->kind == kind)
                return *function;
    return nullptr;
}

HRESULT failAt(UINT index, HRESULT failure, UINT* badArgument)
{
    if (badArgument)
        *badArgument = index;
    return failure;
}

HRESULT checkCounts(const Function& function, const DISPPARAMS& parameters)
{
    if ((parameters.cArgs != 0 && !parameters.rgvarg) ||
        (parameters.cNamedArgs != 0 && !parameters.rgdispidNamedArgs))
        return E_INVALIDARG;
    if (parameters.cArgs < function.required || parameters.cArgs > function.arguments.size() ||
        parameters.cNamedArgs > parameters.cArgs)
        return DISP_E_BADPARAMCOUNT;
    return S_OK;
}

/// Finds the argument of each parameter. In `rgvarg`, the named arguments come first, in any order, and then
/// the unnamed arguments in reverse order. A property put must pass its value as the named argument
/// `DISPID_PROPERTYPUT`.
HRESULT matchArguments(const Function& function, const DISPPARAMS& parameters, ArgumentIndexes& indexes,
                       UINT* badArgument)
{
    indexes.fill(kNoArgument);
    const auto count = static_cast<UINT>(function.arguments.size());
    for (UINT index = parameters.cNamedArgs; index < parameters.cArgs; ++index)
        indexes[parameters.cArgs - 1 - index] = index;
    for (UINT index = 0; index < parameters.cNamedArgs; ++index) {
        const DISPID name = parameters.rgdispidNamedArgs[index];
        const bool isValue = function.isPut() && name == DISPID_PROPERTYPUT;
        const UINT position = isValue ? count - 1 : static_cast<UINT>(name);
        const UINT end = function.isPut() && !isValue ? count - 1 : count;
        if (position >= end || indexes[position] != kNoArgument)
            return failAt(index, DISP_E_PARAMNOTFOUND, badArgument);
        indexes[position] = index;
    }
    // Refuse a property put whose value is missing or was passed as an unnamed argument.
    if (function.isPut() &&
        (indexes[count - 1] == kNoArgument || indexes[count - 1] >= parameters.cNamedArgs))
        return DISP_E_PARAMNOTFOUND;
    return S_OK;
}

bool isOmitted(const VARIANT& plain)
{
    return plain.vt == VT_ERROR && plain.scode == DISP_E_PARAMNOTFOUND;
}

/// Converts one argument to the type of its parameter. Owns the BSTR or the object reference that the
/// conversion may create.
class Argument
{
public:
    HRESULT set(const Parameter& parameter, const VARIANT* argument)
    {
        VARIANT plain{};
        plain.vt = VT_ERROR;
        plain.scode = DISP_E_PARAMNOTFOUND;
        if (argument) {
            const HRESULT hr = dereference(*argument, plain);
            if (FAILED(hr))
                return hr;
        }
        if (!isOmitted(plain))
            return convert(*parameter.type, plain);
        if (!parameter.isOptional)
            return DISP_E_PARAMNOTOPTIONAL;
        m_storage.variant = parameter.type->tag == VT_VARIANT ? plain : VARIANT{};
        return S_OK;
    }
    void* address() { return &m_storage; }

private:
    HRESULT convert(const ValueType& type, const VARIANT& plain)
    {
        switch (type.tag) {
        case VT_VARIANT:
            m_storage.variant = plain;
            return S_OK;
        case VT_BSTR:
            return toText(plain, m_storage.text, m_text);
        case VT_BOOL:
            return toBoolean(plain, m_storage.boolean);
        case VT_I4:
            return toInteger(plain, m_storage.integer);
        default: {
            const HRESULT hr = toObject(plain, type.iid, m_object);
            m_storage.object = m_object.get();
            return hr;
        }
        }
    }

    Storage m_storage;
    kel::Bstr m_text;
    kel::ComPtr<IUnknown> m_object;
};

using Arguments = std::array<Argument, kMaxArguments>;

HRESULT setArguments(const Function& function, const DISPPARAMS& parameters, Arguments& arguments,
                     UINT* badArgument)
{
    ArgumentIndexes indexes;
    HRESULT hr = matchArguments(function, parameters, indexes, badArgument);
    if (FAILED(hr))
        return hr;
    for (std::size_t position = 0; position < function.arguments.size(); ++position) {
        const UINT index = indexes[position];
        hr = arguments[position].set(function.arguments[position],
                                     index == kNoArgument ? nullptr : &parameters.rgvarg[index]);
        if (FAILED(hr))
            return index == kNoArgument ? hr : failAt(index, hr, badArgument);
    }
    return S_OK;
}

/// Receives a member's result. If the result is not a VARIANT, the constructor fills the storage with a
/// pattern. A pattern that is still there after the call shows that the member has not written a result. A
/// result never looks like the pattern, because the pattern is neither a valid address nor a number that
/// members return.
class Result
{
public:
    explicit Result(VARTYPE tag) : m_tag(tag)
    {
        std::memset(&m_storage, kPattern, sizeof m_storage);
        if (tag == VT_VARIANT)
            m_storage.variant = VARIANT{};
    }
    void* address() { return &m_storage; }

    /// Returns the result, or `VT_EMPTY` if the member has not written a result. The caller must free the
    /// result.
    VARIANT value() const
    {
        VARIANT value{};
        if (m_tag == VT_VARIANT)
            return m_storage.variant;
        if (!isWritten())
            return value;
        value.vt = m_tag;
        if (m_tag == VT_BOOL)
            value.boolVal = m_storage.boolean;
        else if (m_tag == VT_I4)
            value.lVal = m_storage.integer;
        else
            value.byref = m_storage.pointer;
        return value;
    }

private:
    static constexpr int kPattern = 0xA7;

    bool isWritten() const
    {
        Storage untouched;
        std::memset(&untouched, kPattern, sizeof untouched);
        const std::size_t size = m_tag == VT_BOOL ? sizeof m_storage.boolean
                                 : m_tag == VT_I4 ? sizeof m_storage.integer
                                                  : sizeof m_storage.pointer;
        return std::memcmp(&m_storage, &untouched, size) != 0;
    }

    const VARTYPE m_tag;
    Storage m_storage;
};

HRESULT callSlot(const Function& function, void* instance, Arguments& arguments, void* resultAddress)
{
    std::array<void*, kMaxArguments + 2> values;
    std::size_t count = 0;
    values[count++] = &instance;
    for (std::size_t position = 0; position < function.arguments.size(); ++position)
        values[count++] = arguments[position].address();
    values[count] = &resultAddress;

    using Slot = void (*)();
    const Slot* const table = *static_cast<const Slot* const*>(instance);
    ffi_cif cif = function.cif;
    ffi_arg returned = 0;
    ffi_call(&cif, table[static_cast<std::size_t>(function.description.oVft) / kSlotSize], &returned,
             values.data());
    return static_cast<HRESULT>(returned);
}

HRESULT reportFailure(HRESULT failure, EXCEPINFO* exception)
{
    if (exception) {
        *exception = EXCEPINFO{};
        exception->scode = failure;
    }
    return DISP_E_EXCEPTION;
}

} // namespace

HRESULT invoke(const InterfaceDescription& interface, void* instance, MEMBERID member, WORD flags,
               const DISPPARAMS* parameters, const CallOutputs& outputs)
{
    if (!instance || !parameters)
        return E_INVALIDARG;
    const Function* const function = functionFor(interface, member, flags);
    if (!function)
        return DISP_E_MEMBERNOTFOUND;
    HRESULT hr = checkCounts(*function, *parameters);
    if (FAILED(hr))
        return hr;
    // `held` keeps the called object alive. The conversion of an argument calls `QueryInterface` of the
    // object that was passed as the argument, and that function may release the host's last reference to the
    // called object.
    const kel::ComPtr<IUnknown> held(static_cast<IUnknown*>(instance));
    Arguments arguments;
    hr = setArguments(*function, *parameters, arguments, outputs.badArgument);
    if (FAILED(hr))
        return hr;

    if (outputs.result)
        *outputs.result = VARIANT{};
    Result result(function->result ? function->result->type->tag : VARTYPE{VT_EMPTY});
    hr = callSlot(*function, instance, arguments, result.address());
    if (FAILED(hr))
        return reportFailure(hr, outputs.exception);
    if (!function->result)
        return hr;
    kel::Variant value = kel::Variant::adopt(result.value());
    if (outputs.result)
        *outputs.result = value.detach();
    return hr;
}

} // namespace kelcom
