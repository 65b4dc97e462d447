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

/// Parameters of a member, without its result. A call keeps them all on the stack.
constexpr std::size_t kMaxArguments = 8;
constexpr std::size_t kMaxFunctions = 512; ///< of one interface, inherited ones included
/// Functions of all interfaces, inherited ones counted in each: each interface has tables of its own. The XML
/// DOM has 204.
constexpr std::size_t kMaxFunctionsInAll = 2048;
constexpr std::size_t kMaxTypes = 256;
constexpr std::size_t kMaxNameLength = 128;

/// The slots of `IDispatch`, with which every described interface begins.
constexpr std::size_t kDispatchSlots = 7;
constexpr std::size_t kSlotSize = sizeof(void*);

static_assert((kDispatchSlots + kMaxFunctions) * kSlotSize <= INT16_MAX, "FUNCDESC::oVft holds every offset");

/// Lower case of a name. Names are ASCII and compare without regard to case.
std::wstring folded(std::wstring_view name);
bool isSameName(std::wstring_view left, std::wstring_view right);

/// Published functions return descriptions as pointers to non-const; callers must only read them.
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
    VARTYPE tag = VT_EMPTY; ///< of a VARIANT with such a value; `VT_EMPTY` until the type is declared
    TYPEDESC description{}; ///< the type itself
    TYPEDESC pointer{};     ///< a pointer to it
    bool isDescribed() const { return tag != VT_EMPTY; }
    bool isInterface() const { return tag == VT_DISPATCH || tag == VT_UNKNOWN; }
    /// Whether the library declares the type; the others are built in.
    bool isDeclared() const { return description.vt == VT_USERDEFINED; }
};

struct Parameter
{
    std::wstring name;
    const ValueType* type = nullptr;
    bool isOptional = false;
};

/// One slot of an interface. It must not move, because its parts point to each other.
struct Function
{
    std::wstring name;
    MEMBERID id = MEMBERID_NIL;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<Parameter> arguments;
    std::optional<Parameter> result;

    // `complete` derives the following from the above.
    std::size_t required = 0; ///< how many arguments are not optional
    FUNCDESC description{};
    std::vector<ELEMDESC> elements;
    std::array<ffi_type*, kMaxArguments + 2>
        ffiTypes{}; ///< the object, the arguments, the pointer to the result
    ffi_cif cif{};

    bool isPut() const { return kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF; }
};

/// Whether a put has a value, a get has a result, and all optional arguments follow the required ones. The
/// value of a put is required.
bool isConsistent(const Function& function);
/// Whether one interface may have both functions. Those of one property share their name and identifier and
/// differ in kind; all others differ in name and identifier.
bool areCompatible(const Function& left, const Function& right);

struct InterfaceDescription
{
    ValueType* type = nullptr;
    std::vector<Function*> functions; ///< in slot order, inherited ones first

    // `complete` derives the following from the above.
    TYPEATTR attributes{};
    /// The functions of each member, in slot order.
    std::unordered_map<MEMBERID, std::vector<const Function*>> members;
    std::vector<std::pair<std::wstring, const Function*>>
        byName; ///< sorted by lower-case name, one per member

    using Functions = const Function* const*;
    /// The functions of a member; an empty range if there is no such member.
    std::pair<Functions, Functions> member(MEMBERID id) const;
    /// The first function of a member; null if there is no such member.
    const Function* firstOf(MEMBERID id) const;
    /// The first function of the member with this name, in upper or lower case; null if there is none.
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

/// Derives the published descriptions and what calls need, once all types are known.
/// \return false if libffi cannot call a function as it is described
bool complete(LibraryDescription& library);

} // namespace kelcom
