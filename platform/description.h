// What a type library describes, as it is kept in memory: built once, then read by any number of threads.

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

/// Parameters of a member, its result not counted: room for what a call needs is taken from the stack.
constexpr std::size_t kMaxArguments = 8;
constexpr std::size_t kMaxFunctions = 512; ///< of one interface, inherited ones included
/// Functions of all interfaces, inherited ones counted in each: each interface has tables of its own. The XML
/// DOM has 204.
constexpr std::size_t kMaxFunctionsInAll = 2048;
constexpr std::size_t kMaxTypes = 256;
constexpr std::size_t kMaxNameLength = 128;

/// The slots of `IDispatch`, which every described interface begins with.
constexpr std::size_t kDispatchSlots = 7;
constexpr std::size_t kSlotSize = sizeof(void*);

static_assert((kDispatchSlots + kMaxFunctions) * kSlotSize <= INT16_MAX, "FUNCDESC::oVft holds every offset");

/// Names are ASCII, and their capitals do not count.
std::wstring folded(std::wstring_view name);
bool isSameName(std::wstring_view left, std::wstring_view right);

/// Published descriptions go out as pointers to structures that could be changed; who gets one only reads it.
template <class T>
T* lend(const T& description)
{
    return const_cast<T*>(&description);
}

/// A type that a parameter may have.
struct ValueType
{
    std::wstring name;
    GUID iid{};             ///< of an interface
    VARTYPE tag = VT_EMPTY; ///< of a VARIANT that holds such a value; `VT_EMPTY`: used, not yet described
    TYPEDESC description{}; ///< the type itself
    TYPEDESC pointer{};     ///< a pointer to it
    bool isDescribed() const { return tag != VT_EMPTY; }
    bool isInterface() const { return tag == VT_DISPATCH || tag == VT_UNKNOWN; }
    /// Of the types that a library declares, rather than every library having them.
    bool isDeclared() const { return description.vt == VT_USERDEFINED; }
};

struct Parameter
{
    std::wstring name;
    const ValueType* type = nullptr;
    bool isOptional = false;
};

/// One slot of an interface. Stays where it is: its parts point to each other.
struct Function
{
    std::wstring name;
    MEMBERID id = MEMBERID_NIL;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<Parameter> arguments;
    std::optional<Parameter> result;

    // The following is worked out of the above by `complete`.
    std::size_t required = 0; ///< the arguments that may not be omitted
    FUNCDESC description{};
    std::vector<ELEMDESC> elements;
    std::array<ffi_type*, kMaxArguments + 2> ffiTypes{}; ///< the object, the arguments, the result's place
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
    std::vector<Function*> functions; ///< in slot order, the inherited ones first

    // The following is worked out of the above by `complete`.
    TYPEATTR attributes{};
    /// Each with its functions in slot order.
    std::unordered_map<MEMBERID, std::vector<const Function*>> members;
    std::vector<std::pair<std::wstring, const Function*>> byName; ///< sorted by folded name, one per member

    using Functions = const Function* const*;
    /// The functions of a member; an empty range when there is none.
    std::pair<Functions, Functions> member(MEMBERID id) const;
    /// The first function of a member; null when there is none.
    const Function* firstOf(MEMBERID id) const;
    /// The first function of a member, found by its name in any capitals; null when there is none.
    const Function* firstNamed(std::wstring_view name) const;
};

struct LibraryDescription
{
    std::wstring name;
    TLIBATTR attributes{};
    std::deque<ValueType> types; // deques: what is in them does not move
    std::deque<Function> functions;
    std::vector<InterfaceDescription> interfaces;
};

/// Works out everything that callers are shown and that calls need, once all types are known.
/// \return false when a call cannot be made the way that a function is described
bool complete(LibraryDescription& library);

} // namespace kelcom
