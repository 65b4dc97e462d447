// VARIANT: a tagged value as it travels by value and by pointer through every interface.

#pragma once

#include "types.h"

class IUnknown;
class IDispatch;

/// Type tags, the `vt` of a `VARIANT`; compared as whole 16-bit values.
enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_VOID = 24,
    VT_HRESULT = 25,
    VT_PTR = 26,
    VT_USERDEFINED = 29,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
};

/// A currency amount in ten-thousandths.
struct CY
{
    std::int64_t int64;
};

/// What `VT_RECORD` carries; no member of this library takes or gives one.
struct VARIANT_RECORD
{
    void* pvRecord;
    void* pRecInfo;
};

/// A tagged value. It is a plain structure: who holds one frees what it carries.
/// The library reads the `VARIANT`s it is given and never changes or frees them.
struct VARIANT
{
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
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

static_assert(sizeof(VARIANT) == 24, "the published 64-bit size; passed by value as such");
