/// \file
/// The common base of all XML DOM objects. The base implements the four methods of `IDispatch` and uses the
/// type information of the object's interface. The first call that needs this type information loads it.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typeinfo.h"

#include <cstddef>
#include <memory>

/// Implements `IDispatch` for one interface. Each object with that interface has its own holder. The first
/// call that needs the interface's type information loads the type information through the type-library
/// service, `KelTypelib`. That call also fills the name cache, which contains the names and identifiers of
/// the interface's members. No lock is needed, because only one thread at a time uses an object and its
/// holder.
class CComTypeInfoHolder
{
public:
    /// Stores the identifiers, but loads nothing yet.
    /// \param interfaceId identifies the interface; must outlive this holder
    /// \param libraryId identifies the type library; must outlive this holder
    /// \param major, minor not used, because `libraryId` is enough to find the type library
    CComTypeInfoHolder(const GUID* interfaceId, const GUID* libraryId, WORD major, WORD minor) noexcept
        : m_pguid(interfaceId), m_plibid(libraryId), m_wMajor(major), m_wMinor(minor)
    {}
    /// Releases the type information first. Then frees the names in the name cache, from the last to the
    /// first.
    ~CComTypeInfoHolder() { m_pInfo.reset(); }
    CComTypeInfoHolder(const CComTypeInfoHolder&) = delete;
    CComTypeInfoHolder& operator=(const CComTypeInfoHolder&) = delete;

    /// Loads the type information and fills the name cache. Does nothing if the type information is already
    /// loaded.
    /// \param locale not used
    /// \return `S_OK`; `E_OUTOFMEMORY` if there is no memory for the name cache, which then stays empty; an
    ///         error code of the type-library service if loading fails (the next call tries to load the type
    ///         information again)
    HRESULT GetTI(LCID locale);
    /// Fills the name cache with the names of the interface's members.
    /// \param typeInfo supplies the names; its reference count does not change
    /// \return `S_OK`, even if there are no names; `E_OUTOFMEMORY`
    HRESULT LoadNameCache(ITypeInfo* typeInfo);

    /// Implements `IDispatch::GetTypeInfo`.
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo);
    /// Implements `IDispatch::GetIDsOfNames`. If `count` is 1 and the name equals the name of a member,
    /// including case, takes the identifier from the name cache. Otherwise, asks the type information.
    HRESULT GetIDsOfNames(wchar_t** names, UINT count, LCID locale, DISPID* identifiers);
    /// Implements `IDispatch::Invoke`. \param object the object that has this holder
    HRESULT Invoke(IDispatch* object, DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters,
                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument);

private:
    struct NameEntry
    {
        kel::Bstr name;
        std::int32_t length = 0;
        DISPID identifier = DISPID_UNKNOWN;
    };

    static void readName(ITypeInfo& typeInfo, UINT index, NameEntry& entry);
    HRESULT ensureLoaded(LCID locale);
    const NameEntry* findName(const wchar_t* name) const noexcept;

    const GUID* m_pguid;
    const GUID* m_plibid;
    [[maybe_unused]] WORD m_wMajor;
    [[maybe_unused]] WORD m_wMinor;
    kel::ComPtr<ITypeInfo> m_pInfo;
    [[maybe_unused]] std::ptrdiff_t m_dwRef = 0; // not used; kept so that the layout does not change
    std::unique_ptr<NameEntry[]> m_pMap;
    std::int32_t m_nCount = 0;
};
static_assert(sizeof(CComTypeInfoHolder) == 56,
              "in every object, the data members follow the holder, so the holder's size sets their offsets");

/// The base of a class that implements the interface `Interface`. Uses a `Holder` to implement the methods of
/// `IDispatch`. The library contains the definitions of these methods, and instantiates the template for the
/// six interfaces in KelXmlLib/xmldom.h.
template <class Interface, const GUID* InterfaceId, const GUID* LibraryId, WORD Major, WORD Minor,
          class Holder>
class IDispatchImpl : public Interface
{
public:
    /// See `IDispatch::GetTypeInfoCount`.
    HRESULT GetTypeInfoCount(UINT* count) override;
    /// See `IDispatch::GetTypeInfo`.
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo) override;
    /// See `IDispatch::GetIDsOfNames`.
    HRESULT GetIDsOfNames(const GUID& riid, wchar_t** names, UINT count, LCID locale,
                          DISPID* identifiers) override;
    /// See `IDispatch::Invoke`.
    HRESULT Invoke(DISPID member, const GUID& riid, LCID locale, WORD flags, DISPPARAMS* parameters,
                   VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override;

protected:
    IDispatchImpl() = default;
    ~IDispatchImpl() = default;

private:
    Holder m_typeInfoHolder{InterfaceId, LibraryId, Major, Minor};
};

/// The base of a class whose objects `DllGetClassObject` can create. This base has no data and no virtual
/// functions.
template <class Class, const GUID* ClassId>
class CComCoClass
{
protected:
    CComCoClass() = default;
    ~CComCoClass() = default;
};
