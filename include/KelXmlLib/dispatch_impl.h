/// \file
/// The common base of all objects: the type information of their interface, loaded on the first call by name,
/// and the four IDispatch methods that use it.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typeinfo.h"

#include <cstddef>
#include <memory>

/// Loads the type information of one interface through the type-library service, on first use, and implements
/// IDispatch with it. Each object has its own holder, without locks.
class CComTypeInfoHolder
{
public:
    /// Loads nothing yet.
    /// \param interfaceId the interface to describe; the pointer is kept
    /// \param libraryId the type library to look in; the pointer is kept
    /// \param major, minor recorded only; the library is found by its identifier alone
    CComTypeInfoHolder(const GUID* interfaceId, const GUID* libraryId, WORD major, WORD minor) noexcept
        : m_pguid(interfaceId), m_plibid(libraryId), m_wMajor(major), m_wMinor(minor)
    {}
    /// Releases the type information, then the names, last one first.
    ~CComTypeInfoHolder()
    {
        m_pInfo.reset(); // then the array destroys its elements, last one first
    }
    CComTypeInfoHolder(const CComTypeInfoHolder&) = delete;
    CComTypeInfoHolder& operator=(const CComTypeInfoHolder&) = delete;

    /// Loads the type information and the name cache unless they are loaded.
    /// \param locale not used
    /// \return `S_OK`; the type-library service's code, after which the next call tries again;
    ///         `E_OUTOFMEMORY` when there is no memory for the name cache
    HRESULT GetTI(LCID locale);
    /// Fills the name cache.
    /// \param typeInfo supplies the names; its reference count is not changed
    /// \return `S_OK`, also when there are no names; `E_OUTOFMEMORY`
    HRESULT LoadNameCache(ITypeInfo* typeInfo);

    /// Implements `IDispatch::GetTypeInfo`.
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo);
    /// Implements `IDispatch::GetIDsOfNames`. A single name in its exact spelling is found in the cache.
    HRESULT GetIDsOfNames(wchar_t** names, UINT count, LCID locale, DISPID* identifiers);
    /// Implements `IDispatch::Invoke` of the object that has this holder.
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
    [[maybe_unused]] std::ptrdiff_t m_dwRef = 0; // not used; keeps its place in the layout
    std::unique_ptr<NameEntry[]> m_pMap;
    std::int32_t m_nCount = 0;
};
static_assert(sizeof(CComTypeInfoHolder) == 56, "the holder is the first member of every object");

/// Implements the IDispatch methods of `Interface` with a `Holder`. Defined and instantiated inside the
/// library, once for each of its six interfaces.
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

/// Marks a class that can be created by its identifier. Has no data and no virtual functions.
template <class Class, const GUID* ClassId>
class CComCoClass
{
protected:
    CComCoClass() = default;
    ~CComCoClass() = default;
};
