/// \file
/// IDispatch: calls by name, with their arguments and outputs.

#pragma once

#include "export.h"
#include "unknown.h"
#include "variant.h"

class ITypeInfo;

/// The arguments of a call by name. The call only reads them, and the caller still owns them.
struct DISPPARAMS
{
    VARIANT* rgvarg;           ///< the named arguments in any order, then all others in reverse order
    DISPID* rgdispidNamedArgs; ///< for each named argument: its parameter's position, from 0, or
                               ///< `DISPID_PROPERTYPUT`
    UINT cArgs;                ///< how many arguments there are, including the named ones
    UINT cNamedArgs;           ///< how many arguments are named
};

/// Describes why a member failed, when `Invoke` returns `DISP_E_EXCEPTION`. No member of the XML DOM fails.
/// By convention the receiver owns the strings, but this library sets them to null.
struct EXCEPINFO
{
    WORD wCode;                               ///< 0, because the code is in `scode`
    WORD wReserved;                           ///< 0
    BSTR bstrSource;                          ///< null
    BSTR bstrDescription;                     ///< null
    BSTR bstrHelpFile;                        ///< null
    DWORD dwHelpContext;                      ///< 0
    void* pvReserved;                         ///< null
    HRESULT (*pfnDeferredFillIn)(EXCEPINFO*); ///< null, because nothing is filled in later
    SCODE scode;                              ///< the code that the member returned
};

// These flags tell `Invoke` what to do with the member. A call may combine `DISPATCH_METHOD` with
// `DISPATCH_PROPERTYGET`, and `DISPATCH_PROPERTYPUT` with `DISPATCH_PROPERTYPUTREF`; it then uses whichever
// function exists.
constexpr WORD DISPATCH_METHOD = 1;         ///< calls the method
constexpr WORD DISPATCH_PROPERTYGET = 2;    ///< reads the property
constexpr WORD DISPATCH_PROPERTYPUT = 4;    ///< sets the property
constexpr WORD DISPATCH_PROPERTYPUTREF = 8; ///< sets the property to an object

/// Calls members by name. At the first call, an object loads the description of its interface from the
/// registered type library, and keeps it. If loading fails, the call returns the error code, and the next
/// call tries again.
class IDispatch : public IUnknown
{
public:
    /// Reports that type information is available.
    /// \param count receives 1
    /// \return `S_OK`; `E_POINTER` if `count` is null
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    /// Returns the description of the object's interface.
    /// \param index must be 0
    /// \param locale not used
    /// \param typeInfo receives the description with one reference, which the caller releases; receives null
    ///        if the description cannot be loaded
    /// \return `S_OK`; `DISP_E_BADINDEX`; `E_POINTER`; an error code of the type-library service (see
    ///         `KelTypelib`)
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) = 0;
    /// Looks up the identifiers of a member and, optionally, of its parameters. Ignores the case of ASCII
    /// letters.
    /// \param riid not used
    /// \param names the member's name, then the names of any parameters; the caller still owns them
    /// \param count how many names there are
    /// \param locale not used
    /// \param identifiers receives an identifier for each name. The identifier of a parameter is its
    ///        position, from 0. An unknown name gets -1
    /// \return `S_OK`; `DISP_E_UNKNOWNNAME` if a name is unknown; `E_POINTER`; `E_INVALIDARG` if `count` is
    ///         0; an error code of the type-library service, with `identifiers` unchanged
    virtual HRESULT GetIDsOfNames(const GUID& riid, wchar_t** names, UINT count, LCID locale,
                                  DISPID* identifiers) = 0;
    /// Calls a member by its identifier. The object stays alive during the call, even if the member, or the
    /// conversion of an argument, releases the last reference to it.
    /// \param member the identifier
    /// \param riid not used
    /// \param locale not used
    /// \param flags one of the `DISPATCH_` constants, or one of the two combinations above
    /// \param parameters the arguments, which the call only reads; must not be null
    /// \param result receives the member's result; may be null. The caller frees its BSTR or releases its
    ///        object. The earlier content is not freed. Becomes `VT_EMPTY` if the member was called but wrote
    ///        no result. Unchanged if the member was not called
    /// \param exception filled if the call returns `DISP_E_EXCEPTION`; may be null
    /// \param badArgument receives the index in `rgvarg` of an argument that cannot be converted; may be null
    /// \return the code of a member that succeeded, which may be `S_FALSE`; `DISP_E_EXCEPTION` if the member
    ///         failed. If the member was not called: `DISP_E_MEMBERNOTFOUND`,
    ///         `DISP_E_BADPARAMCOUNT`, `DISP_E_PARAMNOTFOUND`, `DISP_E_PARAMNOTOPTIONAL`,
    ///         `DISP_E_TYPEMISMATCH`, `DISP_E_OVERFLOW`, `E_INVALIDARG` if `parameters` or an array in it is
    ///         missing, `E_OUTOFMEMORY`, or an error code of the type-library service
    virtual HRESULT Invoke(DISPID member, const GUID& riid, LCID locale, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;

protected:
    ~IDispatch() = default;
};

/// The identifier of `IDispatch`.
extern "C" KEL_EXPORT const GUID IID_IDispatch;
