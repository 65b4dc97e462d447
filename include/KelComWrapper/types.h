// The fundamental published types of the COM layer, with the widths that they have here: `wchar_t`
// is 32 bits, `HRESULT` and `DISPID` are 32 bits, `VARIANT_BOOL` is 16.

#pragma once

#include <cstdint>
#include <cstring>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using INT = std::int32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using LCID = std::uint32_t;
using HRESULT = std::int32_t;
using SCODE = std::int32_t;
using DISPID = std::int32_t;
using MEMBERID = DISPID;
using HREFTYPE = std::uint32_t;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = std::int16_t;
using DATE = double;

using OLECHAR = wchar_t;
/// A zero-ended wide string made by `SysAllocString`; its length prefix counts characters.
using BSTR = wchar_t*;

struct GUID
{
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;

/// Identifiers are equal when all 16 bytes are.
inline bool operator==(const GUID& left, const GUID& right) noexcept
{
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}
inline bool operator!=(const GUID& left, const GUID& right) noexcept
{
    return !(left == right);
}

static_assert(sizeof(wchar_t) == 4, "text crosses the boundary as UCS-4");
static_assert(sizeof(GUID) == 16, "identifiers are compared and mapped as 16 bytes");

constexpr VARIANT_BOOL VARIANT_FALSE = 0;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;

constexpr HRESULT S_OK = 0;
/// The answer of a working method that does nothing for a missing or unusable input.
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001U);
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002U);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003U);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000EU);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057U);

constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003U);
constexpr HRESULT DISP_E_PARAMNOTFOUND = static_cast<HRESULT>(0x80020004U);
constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005U);
constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006U);
constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009U);
constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000AU);
constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000BU);
constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000EU);
constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = static_cast<HRESULT>(0x8002000FU);

constexpr HRESULT TYPE_E_INVDATAREAD = static_cast<HRESULT>(0x80028018U);
constexpr HRESULT TYPE_E_LIBNOTREGISTERED = static_cast<HRESULT>(0x8002801DU);
constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = static_cast<HRESULT>(0x8002802BU);
constexpr HRESULT TYPE_E_CANTLOADLIBRARY = static_cast<HRESULT>(0x80029C4AU);

constexpr bool SUCCEEDED(HRESULT result) noexcept
{
    return result >= 0;
}
constexpr bool FAILED(HRESULT result) noexcept
{
    return result < 0;
}

/// Member identifiers with a meaning of their own.
constexpr DISPID DISPID_VALUE = 0;
constexpr DISPID DISPID_UNKNOWN = -1;
constexpr DISPID DISPID_PROPERTYPUT = -3;
constexpr DISPID DISPID_NEWENUM = -4;
constexpr MEMBERID MEMBERID_NIL = -1;
