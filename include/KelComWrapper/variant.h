/// \file
/// VARIANT: a tagged value, which interfaces pass by value and by pointer.

#pragma once

#include "types.h"

class IUnknown;
class IDispatch;

/// The values of `VARIANT::vt`. They say which member of the union is used.
enum VARENUM : VARTYPE {
    VT_EMPTY = 0,        ///< nothing
    VT_NULL = 1,         ///< a null value of a database; never used by this library
    VT_I2 = 2,           ///< `iVal`
    VT_I4 = 3,           ///< `lVal`
    VT_R4 = 4,           ///< `fltVal`
    VT_R8 = 5,           ///< `dblVal`
    VT_CY = 6,           ///< `cyVal`
    VT_DATE = 7,         ///< `date`
    VT_BSTR = 8,         ///< `bstrVal`
    VT_DISPATCH = 9,     ///< `pdispVal`
    VT_ERROR = 10,       ///< `scode`; the code `DISP_E_PARAMNOTFOUND` means that the argument is left out
    VT_BOOL = 11,        ///< `boolVal`
    VT_VARIANT = 12,     ///< `pvarVal`; only combined with `VT_BYREF`
    VT_UNKNOWN = 13,     ///< `punkVal`
    VT_DECIMAL = 14,     ///< a 96-bit number; never used by this library
    VT_I1 = 16,          ///< `cVal`
    VT_UI1 = 17,         ///< `bVal`
    VT_UI2 = 18,         ///< `uiVal`
    VT_UI4 = 19,         ///< `ulVal`
    VT_I8 = 20,          ///< `llVal`
    VT_UI8 = 21,         ///< `ullVal`
    VT_INT = 22,         ///< `intVal`
    VT_UINT = 23,        ///< `uintVal`
    VT_VOID = 24,        ///< no value; only in type descriptions
    VT_HRESULT = 25,     ///< the return type of a function; only in type descriptions
    VT_PTR = 26,         ///< a pointer to another type; only in type descriptions
    VT_USERDEFINED = 29, ///< a type of the type library; only in type descriptions
    VT_ARRAY = 0x2000,   ///< an array, combined with the type of its items; never used by this library
    VT_BYREF = 0x4000,   ///< a pointer, combined with the type that it points to
};

/// An amount of money.
struct CY
{
    std::int64_t int64; ///< the amount times 10,000
};

/// The content of `VT_RECORD`; never used by this library.
struct VARIANT_RECORD
{
    void* pvRecord; ///< the record
    void* pRecInfo; ///< its description
};

/// A value with its type. The owner frees the BSTR or releases the object in it. The library only reads a
/// `VARIANT` that is passed to it, and never changes or frees it.
struct VARIANT
{
    VARTYPE vt;      ///< a value of `VARENUM`; says which member of the union is used
    WORD wReserved1; ///< never read
    WORD wReserved2; ///< never read
    WORD wReserved3; ///< never read
    // `VARENUM` says which member belongs to which type. With `VT_BYREF`, the member is the pointer to that
    // type.
    union {
        std::int64_t llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        float fltVal;
        double dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        std::int8_t cVal;
        USHORT uiVal;
        ULONG ulVal;
        std::uint64_t ullVal;
        INT intVal;
        UINT uintVal;
        BYTE* pbVal;
        SHORT* piVal;
        LONG* plVal;
        std::int64_t* pllVal;
        float* pfltVal;
        double* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        CY* pcyVal;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        VARIANT* pvarVal;
        std::int8_t* pcVal;
        USHORT* puiVal;
        ULONG* pulVal;
        std::uint64_t* pullVal;
        INT* pintVal;
        UINT* puintVal;
        void* byref;
        VARIANT_RECORD record;
    };
};

static_assert(sizeof(VARIANT) == 24, "the published size for 64 bits, which calls by value rely on");
