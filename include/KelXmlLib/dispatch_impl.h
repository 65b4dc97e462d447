/// \file
/// What every object of the library begins with: the type information of its interface, loaded when a
/// late-bound caller first asks for it, and the four IDispatch methods on top of it.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typeinfo.h"

#include <cstddef>
#include <memory>

/// Finds the type information of one interface through the type-library service, on first use, and answers
/// for it. Each object has its own; nothing is locked.
class CComTypeInfoHolder
{
public:
    /// Holds nothing yet.
    /// \param interfaceId whose type information is taken, kept as a pointer
    /// \param libraryId the type library that it is looked up in, kept as a pointer
    /// \param major, minor recorded; the library is found by its identifier alone
    CComTypeInfoHolder(const GUID* interfaceId, const GUID* libraryId, WORD major, WORD minor) noexcept
        : m_pguid(interfaceId), m_plibid(libraryId), m_wMajor(major), m_wMinor(minor)
    {}
    /// Lets go of the type information, then of the names, the last one first.
    ~CComTypeInfoHolder()
    {
        m_pInfo.reset(); // the array's elements follow by themselves, the last one first
    }
    CComTypeInfoHolder(const CComTypeInfoHolder&) = delete;
    CComTypeInfoHolder& operator=(const CComTypeInfoHolder&) = delete;

    /// Loads the type information and the name cache if they are not there yet.
    /// \param locale not used
    /// \return `S_OK`; what the type-library service answered, and then the next call tries again;
    ///         `E_OUTOFMEMORY` when there is none for the name cache
    HRESULT GetTI(LCID locale);
    /// Fills the name cache.
    /// \param typeInfo what the names are taken from; its reference count is not touched
    /// \return `S_OK`, also when there is nothing to fill it with; `E_OUTOFMEMORY`
    HRESULT LoadNameCache(ITypeInfo* typeInfo);

    /// The body of `IDispatch::GetTypeInfo`.
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** typeInfo);
    /// The body of `IDispatch::GetIDsOfNames`. A single name in its own capitals is answered from the cache.
    HRESULT GetIDsOfNames(wchar_t** names, UINT count, LCID locale, DISPID* identifiers);
    /// The body of `IDispatch::Invoke`, of the object that holds this.
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
    [[maybe_unused]] std::ptrdiff_t m_dwRef = 0; // a place in the layout, not used
    std::unique_ptr<NameEntry[]> m_pMap;
    std::int32_t m_nCount = 0;
};
static_assert(sizeof(CComTypeInfoHolder) == 56, "the holder is the first member of every object");

/// Supplies the IDispatch methods of `Interface` through a `Holder`. Defined and instantiated inside the
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

/// Marks a class that can be created by its identifier. It has no data and no virtual functions.
template <class Class, const GUID* ClassId>
class CComCoClass
{
protected:
    CComCoClass() = default;
    ~CComCoClass() = default;
};
