/// \file
/// `IDispatch`, which calls members by name, and the structures for the arguments and outputs of a call.

#pragma once

#include "export.h"
#include "unknown.h"
#include "variant.h"

class ITypeInfo;

/// The arguments of a call by name. `Invoke` only reads the arguments, and the caller still owns them.
struct DISPPARAMS
{
    /// First the named arguments, in any order; then the unnamed arguments, in reverse order.
    VARIANT* rgvarg;
    /// One entry for each named argument: the position of its parameter, counted from 0, or
    /// `DISPID_PROPERTYPUT` if the argument is the value of a property put.
    DISPID* rgdispidNamedArgs;
    UINT cArgs;      ///< the number of all arguments, named and unnamed
    UINT cNamedArgs; ///< the number of named arguments
};

/// Describes the failure of a member. `Invoke` fills in this structure if it returns `DISP_E_EXCEPTION`.
/// Members of the XML DOM never cause this result, because they return no failure codes. By convention, the
/// receiver of this structure frees its strings, but this library always sets the strings to null.
struct EXCEPINFO
{
    WORD wCode;                               ///< 0, because `scode` has the failure code
    WORD wReserved;                           ///< 0
    BSTR bstrSource;                          ///< null
    BSTR bstrDescription;                     ///< null
    BSTR bstrHelpFile;                        ///< null
    DWORD dwHelpContext;                      ///< 0
    void* pvReserved;                         ///< null
    HRESULT (*pfnDeferredFillIn)(EXCEPINFO*); ///< null: `Invoke` fills in everything at once
    SCODE scode;                              ///< the failure code that the member returned
};

// Each flag tells `Invoke` what to do with the member. Two combinations of flags are allowed:
// `DISPATCH_METHOD | DISPATCH_PROPERTYGET` and `DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF`. For a
// combination, `Invoke` obeys the first flag if the member supports it, else the second flag.
constexpr WORD DISPATCH_METHOD = 1;         ///< calls the method
constexpr WORD DISPATCH_PROPERTYGET = 2;    ///< reads the property
constexpr WORD DISPATCH_PROPERTYPUT = 4;    ///< sets the property
constexpr WORD DISPATCH_PROPERTYPUTREF = 8; ///< sets the property to an object

/// Calls the members of an object by name. The first call that needs the description of the object's
/// interface loads the description from the registered type library, and the object keeps the description. If
/// loading fails, the call returns the error code, and the next call tries again to load the description.
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
    /// \return `S_OK`; `DISP_E_BADINDEX` if `index` is not 0; `E_POINTER` if `typeInfo` is null; an error
    ///         code of the type-library service (see `KelTypelib`)
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) = 0;
    /// Looks up the identifiers of a member and, optionally, of parameters of that member. The case of ASCII
    /// letters does not matter.
    /// \param riid not used
    /// \param names the name of the member, then the names of parameters, if any; the caller still owns these
    ///        strings
    /// \param count how many names there are
    /// \param locale not used
    /// \param identifiers receives an identifier for each name. The identifier of a parameter is the position
    ///        of the parameter, counted from 0. The identifier of an unknown name is -1
    /// \return `S_OK`; `DISP_E_UNKNOWNNAME` if a name is unknown; `E_POINTER` if `names` or `identifiers` is
    ///         null; `E_INVALIDARG` if `count` is 0; an error code of the type-library service. If that
    ///         service fails, `identifiers` is unchanged
    virtual HRESULT GetIDsOfNames(const GUID& riid, wchar_t** names, UINT count, LCID locale,
                                  DISPID* identifiers) = 0;
    /// Calls a member by its identifier. The object stays alive until the call returns, even if the member or
    /// the conversion of an argument releases the last reference to the object.
    /// \param member the identifier of the member
    /// \param riid not used
    /// \param locale not used
    /// \param flags one of the `DISPATCH_` constants, or one of the two combinations that are allowed
    /// \param parameters the arguments, which the call only reads; must not be null, even for a call without
    ///        arguments
    /// \param result receives the result of the member; may be null. The caller frees a BSTR in the result,
    ///        and releases an object in the result. The earlier content of `result` is not freed. If the
    ///        member was called but wrote no result, `result` becomes `VT_EMPTY`. If the member was not
    ///        called, `result` is unchanged
    /// \param exception filled if the call returns `DISP_E_EXCEPTION`; may be null
    /// \param badArgument if one argument made the call fail, receives the index of that argument in
    ///        `rgvarg`; may be null
    /// \return the success code that the member returned, which may be `S_FALSE`; `DISP_E_EXCEPTION` if the
    ///         member returned a failure code. If the member was not called: `DISP_E_MEMBERNOTFOUND`,
    ///         `DISP_E_BADPARAMCOUNT`, `DISP_E_PARAMNOTFOUND`, `DISP_E_PARAMNOTOPTIONAL`,
    ///         `DISP_E_TYPEMISMATCH`, `DISP_E_OVERFLOW`, `E_OUTOFMEMORY`, an error code of the type-library
    ///         service, or `E_INVALIDARG`. `E_INVALIDARG` means that `parameters` is null, or that `cArgs` or
    ///         `cNamedArgs` is not 0 although its array is null
    virtual HRESULT Invoke(DISPID member, const GUID& riid, LCID locale, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;

protected:
    ~IDispatch() = default;
};

/// The identifier of `IDispatch`.
extern "C" KEL_EXPORT const GUID IID_IDispatch;
