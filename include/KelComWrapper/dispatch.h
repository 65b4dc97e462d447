/// \file
/// IDispatch: calls by name, with their arguments and outputs.

#pragma once

#include "export.h"
#include "unknown.h"
#include "variant.h"

class ITypeInfo;

/// The arguments of a call by name. The call only reads them; the caller keeps ownership.
struct DISPPARAMS
{
    VARIANT* rgvarg;           ///< the named arguments in any order, then the others in reverse order
    DISPID* rgdispidNamedArgs; ///< the positions of the named ones, from 0, or `DISPID_PROPERTYPUT`
    UINT cArgs;                ///< how many arguments there are, the named ones included
    UINT cNamedArgs;           ///< how many of them are named
};

/// Describes the failure of a member when `Invoke` returns `DISP_E_EXCEPTION`. The receiver would own the
/// strings (`SysFreeString`), but here they are null. No member of the XML DOM fails.
struct EXCEPINFO
{
    WORD wCode;                               ///< 0: the code is in `scode`
    WORD wReserved;                           ///< 0
    BSTR bstrSource;                          ///< null
    BSTR bstrDescription;                     ///< null
    BSTR bstrHelpFile;                        ///< null
    DWORD dwHelpContext;                      ///< 0
    void* pvReserved;                         ///< null
    HRESULT (*pfnDeferredFillIn)(EXCEPINFO*); ///< null: nothing is filled in later
    SCODE scode;                              ///< the code that the member returned
};

// What `Invoke` does with the member.
constexpr WORD DISPATCH_METHOD = 1;         ///< calls it; may be combined with a get
constexpr WORD DISPATCH_PROPERTYGET = 2;    ///< reads the property
constexpr WORD DISPATCH_PROPERTYPUT = 4;    ///< sets the property; may be combined with the next
constexpr WORD DISPATCH_PROPERTYPUTREF = 8; ///< sets the property to an object

/// Calls members by name. An object loads the description of its interface from the registered type library
/// at the first call, and keeps it. If that fails, the call returns the code, and the next call tries again.
class IDispatch : public IUnknown
{
public:
    /// \param count receives 1
    /// \return `S_OK`; `E_POINTER` when `count` is null
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    /// Returns the description of the object's interface.
    /// \param index must be 0
    /// \param locale not used
    /// \param typeInfo receives it with one reference, which the caller releases; null if it cannot be loaded
    /// \return `S_OK`; `DISP_E_BADINDEX`; `E_POINTER`; the type-library service's code (see `KelTypelib`)
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) = 0;
    /// Maps the name of a member, and any names of its parameters, to identifiers. ASCII letters match in
    /// upper and lower case.
    /// \param riid not used
    /// \param names the member's name, then any names of parameters; the caller keeps ownership
    /// \param count how many names there are
    /// \param locale not used
    /// \param identifiers receives one for each name, a parameter's position from 0; -1 for an unknown name
    /// \return `S_OK`; `DISP_E_UNKNOWNNAME` when a name is unknown; `E_POINTER`; `E_INVALIDARG` for no name;
    ///         the type-library service's code, `identifiers` unchanged
    virtual HRESULT GetIDsOfNames(const GUID& riid, wchar_t** names, UINT count, LCID locale,
                                  DISPID* identifiers) = 0;
    /// Calls a member by its identifier. The object stays alive during the call, even if an argument releases
    /// the last reference to it.
    /// \param member the identifier
    /// \param riid not used
    /// \param locale not used
    /// \param flags one of the `DISPATCH_` constants, or two that may be combined
    /// \param parameters the arguments, which the call only reads; never null
    /// \param result receives the member's result. The caller frees its BSTR or releases its object. The
    ///        earlier value is not freed. `VT_EMPTY` if the member wrote no result; unchanged if the member
    ///        was not called. May be null
    /// \param exception filled if the call returns `DISP_E_EXCEPTION`; may be null
    /// \param badArgument receives the index in `rgvarg` of an argument that cannot be converted; may be null
    /// \return the member's own code, including `S_FALSE`. If the member was not called:
    ///         `DISP_E_MEMBERNOTFOUND`, `DISP_E_BADPARAMCOUNT`, `DISP_E_PARAMNOTFOUND`,
    ///         `DISP_E_PARAMNOTOPTIONAL`, `DISP_E_TYPEMISMATCH`, `DISP_E_OVERFLOW`, `E_INVALIDARG` for
    ///         missing arrays, `E_OUTOFMEMORY`, or the type-library service's code. `DISP_E_EXCEPTION` if the
    ///         member failed
    virtual HRESULT Invoke(DISPID member, const GUID& riid, LCID locale, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;

protected:
    ~IDispatch() = default;
};

/// The identifier of `IDispatch`.
extern "C" KEL_EXPORT const GUID IID_IDispatch;
