// The description of a type library in memory. It is built once, then read by any number of threads.

#pragma once

#include "KelComWrapper/typeinfo.h"

#include <array>
#include <cstddef>
#include <deque>
#include <ffi.h>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kelcom
{

/// Maximum number of parameters of a member, not counting its result. A call keeps all of them on the stack.
constexpr std::size_t kMaxArguments = 8;
constexpr std::size_t kMaxFunctions = 512; ///< of one interface, including inherited functions
/// Maximum for all interfaces together. Each interface counts its inherited functions again, because it has
/// its own tables for them. The XML DOM has 204 functions.
constexpr std::size_t kMaxFunctionsInAll = 2048;
constexpr std::size_t kMaxTypes = 256;
constexpr std::size_t kMaxNameLength = 128;

/// The slots of `IDispatch`. Every described interface begins with them.
constexpr std::size_t kDispatchSlots = 7;
constexpr std::size_t kSlotSize = sizeof(void*);

static_assert((kDispatchSlots + kMaxFunctions) * kSlotSize <= INT16_MAX, "FUNCDESC::oVft holds every offset");

/// The name in lower case. Names are ASCII, and comparisons ignore case.
std::wstring folded(std::wstring_view name);
bool isSameName(std::wstring_view left, std::wstring_view right);

/// Removes `const` from a description, because the published functions return non-const pointers. Callers
/// must not write to the description.
template <class T>
T* lend(const T& description)
{
    return const_cast<T*>(&description);
}

/// A type that a parameter may have.
struct ValueType
{
    std::wstring name;
    GUID iid{};             ///< only for an interface
    VARTYPE tag = VT_EMPTY; ///< `vt` of a VARIANT with such a value; `VT_EMPTY` until declared
    TYPEDESC description{}; ///< the type itself
    TYPEDESC pointer{};     ///< a pointer to it
    bool isDescribed() const { return tag != VT_EMPTY; }
    bool isInterface() const { return tag == VT_DISPATCH || tag == VT_UNKNOWN; }
    /// Whether the library declares the type. All other types are built in.
    bool isDeclared() const { return description.vt == VT_USERDEFINED; }
};

struct Parameter
{
    std::wstring name;
    const ValueType* type = nullptr;
    bool isOptional = false;
};

/// The function in one slot of an interface. Must not be moved, because its members point to each other.
struct Function
{
    std::wstring name;
    MEMBERID id = MEMBERID_NIL;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<Parameter> arguments;
    std::optional<Parameter> result;

    // `complete` computes the following members from those above.
    std::size_t required = 0; ///< the number of required arguments
    FUNCDESC description{};
    std::vector<ELEMDESC> elements;
    std::array<ffi_type*, kMaxArguments + 2>
        ffiTypes{}; ///< of the object, the arguments and the pointer to the result
    ffi_cif cif{};

    bool isPut() const { return kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF; }
};

/// Checks three rules. A property get has a result. A property put has a required value as its last argument,
/// and no result. No required argument follows an optional one.
bool isConsistent(const Function& function);
/// Whether one interface may have both functions. Functions of the same property share their name and
/// identifier and differ in kind. All other functions differ in both name and identifier.
bool areCompatible(const Function& left, const Function& right);

struct InterfaceDescription
{
    ValueType* type = nullptr;
    std::vector<Function*> functions; ///< in slot order, inherited ones first

    // `complete` computes the following members from those above.
    TYPEATTR attributes{};
    /// The functions of each member, in slot order.
    std::unordered_map<MEMBERID, std::vector<const Function*>> members;
    std::vector<std::pair<std::wstring, const Function*>>
        byName; ///< sorted by lower-case name, one entry per member

    using Functions = const Function* const*;
    /// The functions of a member; an empty range if there is no such member.
    std::pair<Functions, Functions> member(MEMBERID id) const;
    /// The first function of a member; null if there is no such member.
    const Function* firstOf(MEMBERID id) const;
    /// The first function of the member with this name, ignoring case; null if there is no such member.
    const Function* firstNamed(std::wstring_view name) const;
};

struct LibraryDescription
{
    std::wstring name;
    TLIBATTR attributes{};
    std::deque<ValueType> types; // deques do not move their elements
    std::deque<Function> functions;
    std::vector<InterfaceDescription> interfaces;
};

/// Computes the structures that callers receive, the lookup tables and libffi's call descriptions. Call it
/// once all types are known. \return false if libffi cannot call one of the functions
bool complete(LibraryDescription& library);

} // namespace kelcom
