/// \file
/// The common base of all objects. Implements the four methods of IDispatch with the type information of the
/// object's interface, which is loaded at the first call by name.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typeinfo.h"

#include <cstddef>
#include <memory>

/// Implements IDispatch for one interface. Loads the type information through the type-library service when
/// it is first needed. There is no lock, because each object has a holder of its own, and is
/// used by one thread at a time.
class CComTypeInfoHolder
{
public:
    /// Stores the identifiers, but loads nothing yet.
    /// \param interfaceId identifies the interface; must outlive this object
    /// \param libraryId identifies the type library; must outlive this object
    /// \param major, minor not used, because the library is looked up by its identifier alone
    CComTypeInfoHolder(const GUID* interfaceId, const GUID* libraryId, WORD major, WORD minor) noexcept
        : m_pguid(interfaceId), m_plibid(libraryId), m_wMajor(major), m_wMinor(minor)
    {}
    /// Releases the type information first. The name cache then frees its names from last to first.
    ~CComTypeInfoHolder() { m_pInfo.reset(); }
    CComTypeInfoHolder(const CComTypeInfoHolder&) = delete;
    CComTypeInfoHolder& operator=(const CComTypeInfoHolder&) = delete;

    /// Loads the type information and the name cache, unless they are loaded already.
    /// \param locale not used
    /// \return `S_OK`; `E_OUTOFMEMORY` if there is no memory for the name cache; an error code of the
    ///         type-library service. After an error, the next call tries again
    HRESULT GetTI(LCID locale);
    /// Fills the name cache.
    /// \param typeInfo supplies the names; its reference count does not change
    /// \return `S_OK`, also when there are no names; `E_OUTOFMEMORY`
    HRESULT LoadNameCache(ITypeInfo* typeInfo);

    /// Implements `IDispatch::GetTypeInfo`.
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo);
    /// Implements `IDispatch::GetIDsOfNames`. Uses the cache for a single name that is spelled exactly like
    /// the member.
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
              "the holder is at the start of every object, so its size is part of each layout");

/// Implements the IDispatch methods of `Interface` with a `Holder`. The library defines the methods, and
/// instantiates them for its six interfaces.
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

/// The base of a class that `DllGetClassObject` can create. It has no data and no virtual functions.
template <class Class, const GUID* ClassId>
class CComCoClass
{
protected:
    CComCoClass() = default;
    ~CComCoClass() = default;
};
