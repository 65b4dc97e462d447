// The in-memory description of a type library. One thread builds the description. After that, any number of
// threads may read the description at the same time.

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

/// Maximum number of parameters of a member, not counting the parameter for the result. The number is limited
/// because a call keeps all arguments on the stack.
constexpr std::size_t kMaxArguments = 8;
/// Maximum number of functions of one interface, including inherited functions.
constexpr std::size_t kMaxFunctions = 512;
/// Maximum number of functions of all interfaces together. An inherited function counts once for each
/// interface that has it, because each interface has its own lookup tables. Counted in this way, the XML DOM
/// has 204 functions.
constexpr std::size_t kMaxFunctionsInAll = 2048;
constexpr std::size_t kMaxTypes = 256;
constexpr std::size_t kMaxNameLength = 128;

/// The number of vtable slots of `IDispatch`. The vtable of every described interface begins with these
/// slots.
constexpr std::size_t kDispatchSlots = 7;
constexpr std::size_t kSlotSize = sizeof(void*);

static_assert((kDispatchSlots + kMaxFunctions) * kSlotSize <= INT16_MAX,
              "FUNCDESC::oVft can hold the offset of every slot");

/// Returns the name with the letters A to Z in lower case. No other letters matter, because type libraries
/// contain only ASCII names.
std::wstring folded(std::wstring_view name);
/// Whether two names are equal if the case of the letters A to Z is ignored.
bool isSameName(std::wstring_view left, std::wstring_view right);

/// Removes `const`, because `ITypeInfo` and `ITypeLib` return descriptions through pointers to non-constant
/// objects. Hosts must not write to the description.
template <class T>
T* lend(const T& description)
{
    return const_cast<T*>(&description);
}

/// The type of a parameter or of a result.
struct ValueType
{
    std::wstring name;
    GUID iid{}; ///< set only if the type is an interface
    /// `vt` of a VARIANT that contains a value of this type. During parsing, `VT_EMPTY` for a type that a
    /// parameter uses before the file declares the type.
    VARTYPE tag = VT_EMPTY;
    TYPEDESC description{}; ///< describes this type to hosts
    TYPEDESC pointer{};     ///< describes a pointer to this type
    bool isDescribed() const { return tag != VT_EMPTY; }
    bool isInterface() const { return tag == VT_DISPATCH || tag == VT_UNKNOWN; }
    /// Whether the type library declares this type. False for a built-in type.
    bool isDeclared() const { return description.vt == VT_USERDEFINED; }
};

struct Parameter
{
    std::wstring name;
    const ValueType* type = nullptr;
    bool isOptional = false;
};

/// The function in one vtable slot of an interface. A `Function` must not be moved, because some of its data
/// members point to other data members.
struct Function
{
    std::wstring name;
    MEMBERID id = MEMBERID_NIL;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<Parameter> arguments;
    std::optional<Parameter> result;

    // The function `complete` computes the data members below from the data members above.
    std::size_t required = 0; ///< the number of required arguments
    FUNCDESC description{};
    std::vector<ELEMDESC> elements;
    /// libffi's types of the object pointer, the arguments and the pointer to the result, in this order.
    std::array<ffi_type*, kMaxArguments + 2> ffiTypes{};
    ffi_cif cif{};

    bool isPut() const { return kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF; }
};

/// Whether the function follows these rules:
/// - A property get has a result.
/// - A property put has no result. Its last argument is the value, which is required.
/// - No required argument follows an optional argument.
bool isConsistent(const Function& function);
/// Whether one interface may have both functions. Two functions of the same property must have the same name
/// and the same identifier, but different kinds. Any other two functions must have different names and
/// different identifiers.
bool areCompatible(const Function& left, const Function& right);

struct InterfaceDescription
{
    ValueType* type = nullptr;
    std::vector<Function*> functions; ///< in slot order, inherited functions first

    // The function `complete` computes the data members below from the data members above.
    TYPEATTR attributes{};
    /// The functions of each member in slot order. For example, a property may have a getter and a setter.
    std::unordered_map<MEMBERID, std::vector<const Function*>> members;
    /// The first function of each member, sorted by the member's name in lower case.
    std::vector<std::pair<std::wstring, const Function*>> byName;

    using Functions = const Function* const*;
    /// Returns the functions of the member with this identifier, or an empty range if no member has the
    /// identifier.
    std::pair<Functions, Functions> member(MEMBERID id) const;
    /// Returns the first function of the member with this identifier, or null if no member has the
    /// identifier.
    const Function* firstOf(MEMBERID id) const;
    /// Returns the first function of the member with this name, or null if no member has the name. Ignores
    /// case.
    const Function* firstNamed(std::wstring_view name) const;
};

struct LibraryDescription
{
    std::wstring name;
    TLIBATTR attributes{};
    // A deque does not move its elements when it grows, so pointers to types and functions stay valid.
    std::deque<ValueType> types;
    std::deque<Function> functions;
    std::vector<InterfaceDescription> interfaces;
};

/// Computes the structures that hosts receive, the lookup tables, and the descriptions of calls for libffi.
/// Call this function only after all types have been declared.
/// \return false if libffi cannot call one of the functions
bool complete(LibraryDescription& library);

} // namespace kelcom
