// Declares the class that implements ITypeLib for a loaded type library.

#pragma once

#include "platform/description.h"

#include <atomic>
#include <memory>

namespace kelcom
{

/// A loaded type library. Several threads may use the same `TypeLibrary`. The registry of type libraries
/// keeps one reference to the `TypeLibrary` forever, and each `TypeInfo` object of the library keeps one more
/// reference.
class TypeLibrary final : public ITypeLib
{
public:
    explicit TypeLibrary(std::unique_ptr<const LibraryDescription> description)
        : m_description(std::move(description))
    {}

    HRESULT QueryInterface(const GUID& riid, void** ppv) override;
    ULONG AddRef() override { return ++m_count; }
    ULONG Release() override;

    UINT GetTypeInfoCount() override;
    HRESULT GetTypeInfo(UINT index, ITypeInfo** typeInfo) override;
    HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) override;
    HRESULT GetTypeInfoOfGuid(const GUID& guid, ITypeInfo** typeInfo) override;
    HRESULT GetLibAttr(TLIBATTR** attributes) override;
    HRESULT GetTypeComp(ITypeComp** comp) override;
    HRESULT GetDocumentation(INT index, BSTR* name, BSTR* documentation, DWORD* helpContext,
                             BSTR* helpFile) override;
    HRESULT IsName(wchar_t* name, ULONG hash, INT* isName) override;
    HRESULT FindName(wchar_t* name, ULONG hash, ITypeInfo** typeInfos, MEMBERID* members,
                     USHORT* count) override;
    void ReleaseTLibAttr(TLIBATTR* attributes) override;

    const std::vector<InterfaceDescription>& interfaces() const { return m_description->interfaces; }

private:
    ~TypeLibrary() = default;

    const std::unique_ptr<const LibraryDescription> m_description;
    std::atomic<ULONG> m_count{0};
};

/// Implements `GetDocumentation` for `ITypeLib` and `ITypeInfo`. A type library documents only names, so
/// `documentation` and `helpFile` receive null, and `helpContext` receives 0. Any output pointer may be null.
/// \param name the name to return in `nameOut`; null if the host asked about something that does not exist
HRESULT documentationOf(const std::wstring* name, BSTR* nameOut, BSTR* documentation, DWORD* helpContext,
                        BSTR* helpFile);

/// Implements `QueryInterface` for an object that has one interface in addition to `IUnknown`.
/// \param own the identifier of the additional interface
template <class Interface>
HRESULT queryInterface(Interface* object, const GUID& own, const GUID& riid, void** ppv)
{
    if (!ppv)
        return E_POINTER;
    *ppv = nullptr;
    if (riid != IID_IUnknown && riid != own)
        return E_NOINTERFACE;
    object->AddRef();
    *ppv = object;
    return S_OK;
}

} // namespace kelcom
