/// \file
/// `VARIANT`: a value together with its type. Methods take a `VARIANT` by value or by pointer.

#pragma once

#include "types.h"

class IUnknown;
class IDispatch;

/// The values of `VARIANT::vt`. Each value says which member of the union in `VARIANT` is used.
enum VARENUM : VARTYPE {
    VT_EMPTY = 0,        ///< nothing
    VT_NULL = 1,         ///< a null value from a database; this library never uses it
    VT_I2 = 2,           ///< `iVal`
    VT_I4 = 3,           ///< `lVal`
    VT_R4 = 4,           ///< `fltVal`
    VT_R8 = 5,           ///< `dblVal`
    VT_CY = 6,           ///< `cyVal`
    VT_DATE = 7,         ///< `date`
    VT_BSTR = 8,         ///< `bstrVal`
    VT_DISPATCH = 9,     ///< `pdispVal`
    VT_ERROR = 10,       ///< `scode`; an argument with the code `DISP_E_PARAMNOTFOUND` counts as left out
    VT_BOOL = 11,        ///< `boolVal`
    VT_VARIANT = 12,     ///< `pvarVal`; alone only in type descriptions, else with `VT_BYREF`
    VT_UNKNOWN = 13,     ///< `punkVal`
    VT_DECIMAL = 14,     ///< a 96-bit number; this library never uses it
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
    VT_ARRAY = 0x2000,   ///< a flag for an array, added to the type of the items; this library never uses it
    VT_BYREF = 0x4000,   ///< a flag for a pointer, added to the type of the value that is pointed to
};

/// An amount of money.
struct CY
{
    std::int64_t int64; ///< the amount times 10,000
};

/// The content of a `VARIANT` with the published type `VT_RECORD`, which this library never uses.
struct VARIANT_RECORD
{
    void* pvRecord; ///< the record
    void* pRecInfo; ///< the description of the record
};

/// A value together with its type. The owner of a `VARIANT` frees the BSTR or releases the object in the
/// `VARIANT`. The library only reads a `VARIANT` argument, and never changes or frees its content.
struct VARIANT
{
    VARTYPE vt;      ///< a value of `VARENUM`; says which member of the union is used
    WORD wReserved1; ///< never read
    WORD wReserved2; ///< never read
    WORD wReserved3; ///< never read
    // The comments in `VARENUM` say which member belongs to which type. For a type with `VT_BYREF`, the name
    // of the member has an extra `p` in front: `lVal` belongs to `VT_I4`, and `plVal` to `VT_I4 | VT_BYREF`.
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

static_assert(sizeof(VARIANT) == 24, "the published size on 64-bit platforms; hosts pass a VARIANT by value");
