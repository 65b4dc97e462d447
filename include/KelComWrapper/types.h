/// \file
/// The fundamental published types of the COM layer, with the widths that they have here: `wchar_t`
/// is 32 bits, `HRESULT` and `DISPID` are 32 bits, `VARIANT_BOOL` is 16.

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
using LONG = std::int32_t;         ///< 32 bits, signed, although `long` has 64 here
using ULONG = std::uint32_t;       ///< 32 bits, unsigned, although `unsigned long` has 64 here
using LCID = std::uint32_t;        ///< a locale; none is ever looked at
using HRESULT = std::int32_t;      ///< what a call answers; negative when it failed
using SCODE = std::int32_t;        ///< an `HRESULT` as data
using DISPID = std::int32_t;       ///< a member, or a parameter by its position
using MEMBERID = DISPID;           ///< a member
using HREFTYPE = std::uint32_t;    ///< a type by its place in its type library
using VARTYPE = std::uint16_t;     ///< a value of `VARENUM`
using VARIANT_BOOL = std::int16_t; ///< `VARIANT_TRUE` or `VARIANT_FALSE`; what is not 0 counts as true
using DATE = double;               ///< days since 30 December 1899, the time of day as a fraction

using OLECHAR = wchar_t; ///< one code point, 32 bits
/// A zero-ended wide string made by `SysAllocString`; its length prefix counts characters. Who holds one
/// frees it with `SysFreeString`; one that is passed in stays the caller's.
using BSTR = wchar_t*;

/// An identifier of an interface, a class or a type library: 16 bytes, as published.
struct GUID
{
    std::uint32_t Data1;   ///< the first eight hexadecimal digits
    std::uint16_t Data2;   ///< the next four
    std::uint16_t Data3;   ///< the next four
    std::uint8_t Data4[8]; ///< the rest, a byte for each two digits
};
using IID = GUID;   ///< of an interface
using CLSID = GUID; ///< of a class

/// Identifiers are equal when all 16 bytes are.
inline bool operator==(const GUID& left, const GUID& right) noexcept
{
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}
/// Identifiers differ when one of 16 bytes does.
inline bool operator!=(const GUID& left, const GUID& right) noexcept
{
    return !(left == right);
}

static_assert(sizeof(wchar_t) == 4, "text crosses the boundary as UCS-4");
static_assert(sizeof(GUID) == 16, "identifiers are compared and mapped as 16 bytes");

constexpr VARIANT_BOOL VARIANT_FALSE = 0; ///< all bits clear
constexpr VARIANT_BOOL VARIANT_TRUE = -1; ///< all bits set

/// Done. Of a method that is not carried out: accepted, nothing written.
constexpr HRESULT S_OK = 0;
/// The answer of a working method that does nothing for a missing or unusable input.
constexpr HRESULT S_FALSE = 1;
/// Not carried out, or no such class.
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001U);
/// The object does not answer the interface.
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002U);
/// A pointer to what is to be written, or read, is null.
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003U);
/// The library is not ready, or has nowhere to put the object.
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
/// No memory. Most calls let `std::bad_alloc` through instead.
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000EU);
/// An argument makes no sense.
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057U);

/// The interface has no such member, or not of the asked kind.
constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003U);
/// A named argument has no parameter, or one that is taken; the value of a put is missing. As the `scode`
/// of a `VT_ERROR` argument: left out.
constexpr HRESULT DISP_E_PARAMNOTFOUND = static_cast<HRESULT>(0x80020004U);
/// An argument cannot be brought into the type of its parameter.
constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005U);
/// No member, or no parameter of the member, has that name.
constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006U);
/// The member itself failed; `EXCEPINFO::scode` says how.
constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009U);
/// An argument has no room in the type of its parameter.
constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000AU);
/// The only type information has index 0.
constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000BU);
/// Too few or too many arguments.
constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000EU);
/// An argument that has to be given is left out.
constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = static_cast<HRESULT>(0x8002000FU);

/// The file is no valid type library, or damaged.
constexpr HRESULT TYPE_E_INVDATAREAD = static_cast<HRESULT>(0x80028018U);
/// No type library is registered under the identifier.
constexpr HRESULT TYPE_E_LIBNOTREGISTERED = static_cast<HRESULT>(0x8002801DU);
/// The type library describes no such interface, the interface no such member.
constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = static_cast<HRESULT>(0x8002802BU);
/// The file of a type library is missing or cannot be read.
constexpr HRESULT TYPE_E_CANTLOADLIBRARY = static_cast<HRESULT>(0x80029C4AU);

/// \return whether a call was carried out; `S_FALSE` counts as such
constexpr bool SUCCEEDED(HRESULT result) noexcept
{
    return result >= 0;
}
/// \return whether a call failed
constexpr bool FAILED(HRESULT result) noexcept
{
    return result < 0;
}

// Member identifiers with a meaning of their own.
constexpr DISPID DISPID_VALUE = 0;        ///< the default member: `item` of the collections
constexpr DISPID DISPID_UNKNOWN = -1;     ///< in the place of a name that is not known
constexpr DISPID DISPID_PROPERTYPUT = -3; ///< the name of the value in a put
constexpr DISPID DISPID_NEWENUM = -4;     ///< `_newEnum` of the collections
constexpr MEMBERID MEMBERID_NIL = -1;     ///< no member: the interface itself
