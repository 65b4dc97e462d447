/// \file
/// IDispatch: members reached by name, and what a call by name carries.

#pragma once

#include "export.h"
#include "unknown.h"
#include "variant.h"

class ITypeInfo;

/// The arguments of a call by name. All of it is the caller's; the call reads it.
struct DISPPARAMS
{
    VARIANT* rgvarg;           ///< the named arguments in any order, then the others, the last one first
    DISPID* rgdispidNamedArgs; ///< where the named ones go: positions from 0, or `DISPID_PROPERTYPUT`
    UINT cArgs;                ///< how many arguments there are, the named ones included
    UINT cNamedArgs;           ///< how many of them are named
};

/// What a member that failed has to say, written when `Invoke` answers `DISP_E_EXCEPTION`. The strings belong
/// to the receiver (`SysFreeString`); this platform gives none. No member of the XML DOM fails.
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
    SCODE scode;                              ///< what the member answered
};

// What `Invoke` is to do with the member.
constexpr WORD DISPATCH_METHOD = 1;         ///< call it; may be asked together with a get
constexpr WORD DISPATCH_PROPERTYGET = 2;    ///< read the property
constexpr WORD DISPATCH_PROPERTYPUT = 4;    ///< set the property; may be asked together with the next
constexpr WORD DISPATCH_PROPERTYPUTREF = 8; ///< set the property to an object

/// Members reached by name. An object finds the description of its interface in the registered type library
/// when it is first asked, and keeps it; a failure to find it is answered, and the next call tries again.
class IDispatch : public IUnknown
{
public:
    /// \param count receives 1
    /// \return `S_OK`; `E_POINTER` when `count` is null
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    /// The description of the object's interface.
    /// \param index 0, the only type information there is
    /// \param locale not used
    /// \param typeInfo receives it with one reference, which the caller releases; null when it cannot be had
    /// \return `S_OK`; `DISP_E_BADINDEX`; `E_POINTER`; what the type-library service answered (see
    ///         `KelTypelib`)
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) = 0;
    /// Maps the name of a member, and names of its parameters after it, to identifiers. Capitals of ASCII
    /// letters do not count.
    /// \param riid not used
    /// \param names the member's name, then any names of parameters; they stay the caller's
    /// \param count how many names there are
    /// \param locale not used
    /// \param identifiers receives one for each name, a parameter's position from 0; -1 for an unknown name
    /// \return `S_OK`; `DISP_E_UNKNOWNNAME` when a name is unknown; `E_POINTER`; `E_INVALIDARG` for no name;
    ///         what the type-library service answered, `identifiers` untouched
    virtual HRESULT GetIDsOfNames(const GUID& riid, wchar_t** names, UINT count, LCID locale,
                                  DISPID* identifiers) = 0;
    /// Calls a member by its identifier. The object stays alive during the call, even if an argument releases
    /// the last reference to it.
    /// \param member the identifier
    /// \param riid not used
    /// \param locale not used
    /// \param flags what to do with it: one of the `DISPATCH_` constants, or two that may be asked together
    /// \param parameters the arguments, which are read and stay the caller's; never null
    /// \param result receives the member's result, whose BSTR the caller frees and whose object it releases;
    ///        what it held is not freed. `VT_EMPTY` when the member wrote none; untouched when the member was
    ///        not called. May be null
    /// \param exception filled when the answer is `DISP_E_EXCEPTION`; may be null
    /// \param badArgument receives the index in `rgvarg` of an argument that does not fit; may be null
    /// \return what the member answered, `S_FALSE` included; or, the member not having been called,
    ///         `DISP_E_MEMBERNOTFOUND`, `DISP_E_BADPARAMCOUNT`, `DISP_E_PARAMNOTFOUND`,
    ///         `DISP_E_PARAMNOTOPTIONAL`, `DISP_E_TYPEMISMATCH`, `DISP_E_OVERFLOW`, `E_INVALIDARG` for
    ///         missing arrays, `E_OUTOFMEMORY`, or what the type-library service answered;
    ///         `DISP_E_EXCEPTION` when the member failed
    virtual HRESULT Invoke(DISPID member, const GUID& riid, LCID locale, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;

protected:
    ~IDispatch() = default;
};

/// The identifier of `IDispatch`.
extern "C" KEL_EXPORT const GUID IID_IDispatch;
