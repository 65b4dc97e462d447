/// \file
/// The basic published types of the COM layer. On this platform `wchar_t`, `HRESULT` and `DISPID` have 32
/// bits, and `VARIANT_BOOL` has 16.

#pragma once

#include <cstdint>
#include <cstring>

using BYTE = std::uint8_t;         ///< 8 bits, unsigned
using WORD = std::uint16_t;        ///< 16 bits, unsigned
using DWORD = std::uint32_t;       ///< 32 bits, unsigned
using SHORT = std::int16_t;        ///< 16 bits, signed
using USHORT = std::uint16_t;      ///< 16 bits, unsigned
using INT = std::int32_t;          ///< 32 bits, signed
using UINT = std::uint32_t;        ///< 32 bits, unsigned
using LONG = std::int32_t;         ///< 32 bits, signed; `long` has 64 bits on this platform
using ULONG = std::uint32_t;       ///< 32 bits, unsigned; `unsigned long` has 64 bits on this platform
using LCID = std::uint32_t;        ///< a locale; always ignored
using HRESULT = std::int32_t;      ///< the result of a call; negative for failures
using SCODE = std::int32_t;        ///< an `HRESULT` that a structure contains
using DISPID = std::int32_t;       ///< the identifier of a member, or the position of a parameter
using MEMBERID = DISPID;           ///< identifies a member
using HREFTYPE = std::uint32_t;    ///< the number of a type in its type library
using VARTYPE = std::uint16_t;     ///< a value of `VARENUM`
using VARIANT_BOOL = std::int16_t; ///< `VARIANT_TRUE` or `VARIANT_FALSE`; any value but 0 counts as true
using DATE = double;               ///< days since 30 December 1899, with the time of day as a fraction

using OLECHAR = wchar_t; ///< a character of 32 bits, which holds one code point
/// A zero-terminated wide string from `SysAllocString` or `SysAllocStringLen`. The length in characters is
/// stored in front of the first character. The owner of a BSTR frees the BSTR with `SysFreeString`. A BSTR
/// that is passed as an argument still belongs to the caller.
using BSTR = wchar_t*;

/// An identifier of an interface, a class or a type library: 16 bytes, as published.
struct GUID
{
    std::uint32_t Data1;   ///< the first eight hexadecimal digits of the written form
    std::uint16_t Data2;   ///< the next four digits
    std::uint16_t Data3;   ///< the four digits after those of `Data2`
    std::uint8_t Data4[8]; ///< the last sixteen digits, two in each byte
};
using IID = GUID;   ///< identifies an interface
using CLSID = GUID; ///< identifies a class

/// \return whether all 16 bytes are equal
inline bool operator==(const GUID& left, const GUID& right) noexcept
{
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}
/// \return whether any of the 16 bytes differs
inline bool operator!=(const GUID& left, const GUID& right) noexcept
{
    return !(left == right);
}

static_assert(sizeof(wchar_t) == 4, "hosts and the library exchange text as UCS-4");
static_assert(sizeof(GUID) == 16, "identifiers are compared as 16 bytes");

constexpr VARIANT_BOOL VARIANT_FALSE = 0; ///< all bits clear
constexpr VARIANT_BOOL VARIANT_TRUE = -1; ///< all bits set

/// Success. No-ops, which are methods that do nothing, return this code too. docs/no-ops.md lists the no-ops.
constexpr HRESULT S_OK = 0;
/// The method did not do its work, because an argument is missing or unusable, or because there is nothing to
/// return.
constexpr HRESULT S_FALSE = 1;
/// The method is not implemented, or `DllGetClassObject` does not know the class.
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001U);
/// The object does not have the interface.
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002U);
/// A required pointer is null.
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003U);
/// `DllGetClassObject` was called before `DllMain`, or with a null out-pointer.
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
/// Out of memory. Most calls throw `std::bad_alloc` instead.
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000EU);
/// An argument is invalid.
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057U);

/// The interface has no member with the requested identifier, or the member has no function of the requested
/// kind.
constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003U);
/// A named argument matches no parameter, or matches a parameter that already has an argument. This code also
/// means that the value of a property put is not named `DISPID_PROPERTYPUT`. In addition, a `VT_ERROR`
/// argument with this code as its `scode` counts as left out.
constexpr HRESULT DISP_E_PARAMNOTFOUND = static_cast<HRESULT>(0x80020004U);
/// An argument cannot be converted to the type of its parameter.
constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005U);
/// The interface has no member with the requested name, or the member has no parameter with the requested
/// name.
constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006U);
/// The member failed. `EXCEPINFO::scode` is the code that the member returned.
constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009U);
/// An argument does not fit in the type of its parameter.
constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000AU);
/// The index passed to `IDispatch::GetTypeInfo` is not 0.
constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000BU);
/// Too few or too many arguments.
constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000EU);
/// A required argument is left out.
constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = static_cast<HRESULT>(0x8002000FU);

/// The file is damaged, or is no type library at all.
constexpr HRESULT TYPE_E_INVDATAREAD = static_cast<HRESULT>(0x80028018U);
/// No path of a type library is registered under the identifier.
constexpr HRESULT TYPE_E_LIBNOTREGISTERED = static_cast<HRESULT>(0x8002801DU);
/// The type library does not describe the requested interface, or the interface does not have the requested
/// member.
constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = static_cast<HRESULT>(0x8002802BU);
/// The type library's file is missing or cannot be read.
constexpr HRESULT TYPE_E_CANTLOADLIBRARY = static_cast<HRESULT>(0x80029C4AU);

/// \return whether a call succeeded; `S_FALSE` counts as success
constexpr bool SUCCEEDED(HRESULT result) noexcept
{
    return result >= 0;
}
/// \return whether a call failed
constexpr bool FAILED(HRESULT result) noexcept
{
    return result < 0;
}

// Member identifiers with a special meaning. Below, "collections" means node lists and attribute maps.
constexpr DISPID DISPID_VALUE = 0;        ///< the default member, which is `item` in the collections
constexpr DISPID DISPID_UNKNOWN = -1;     ///< the identifier that is returned for an unknown name
constexpr DISPID DISPID_PROPERTYPUT = -3; ///< marks an argument as the value of a property put
constexpr DISPID DISPID_NEWENUM = -4;     ///< `_newEnum` in the collections
constexpr MEMBERID MEMBERID_NIL = -1;     ///< identifies the interface itself, not a member
