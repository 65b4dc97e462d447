// IDispatch: members reached by name, and what a call by name carries.

#pragma once

#include "unknown.h"
#include "variant.h"

class ITypeInfo;

/// The arguments of a call by name, the last one first.
struct DISPPARAMS
{
    VARIANT* rgvarg;
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
};

/// What a member that failed has to say. The strings belong to the receiver (`SysFreeString`).
struct EXCEPINFO
{
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    void* pvReserved;
    HRESULT (*pfnDeferredFillIn)(EXCEPINFO*);
    SCODE scode;
};

/// What `Invoke` is to do with the member; method and property-get may be asked together.
constexpr WORD DISPATCH_METHOD = 1;
constexpr WORD DISPATCH_PROPERTYGET = 2;
constexpr WORD DISPATCH_PROPERTYPUT = 4;
constexpr WORD DISPATCH_PROPERTYPUTREF = 8;

class IDispatch : public IUnknown
{
public:
    /// \param count receives 1. \return `S_OK`; `E_POINTER` when `count` is null
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    /// \param index 0, the only type information there is
    /// \param typeInfo receives it with one reference for the caller
    /// \return `S_OK`; `DISP_E_BADINDEX`; `E_POINTER`; what the type-library service answered
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) = 0;
    /// Maps a member name, and parameter names after it, to identifiers.
    /// \return `S_OK`; `DISP_E_UNKNOWNNAME` with -1 for each unknown name
    virtual HRESULT GetIDsOfNames(const GUID& riid, wchar_t** names, UINT count, LCID locale,
                                  DISPID* identifiers) = 0;
    /// Calls a member by its identifier.
    /// \param result receives the member's result, which the caller clears; may be null
    /// \param exception filled when the answer is `DISP_E_EXCEPTION`; may be null
    /// \param badArgument receives the index in `rgvarg` of an argument that does not fit; may be null
    virtual HRESULT Invoke(DISPID member, const GUID& riid, LCID locale, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;

protected:
    ~IDispatch() = default;
};

extern "C" [[gnu::visibility("default")]] const GUID IID_IDispatch;
