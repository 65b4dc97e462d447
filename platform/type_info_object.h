// Declares the class that implements ITypeInfo for an interface of a type library.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "platform/type_library_object.h"

#include <atomic>

namespace kelcom
{

/// The type information of one interface. Keeps the type library alive. Several threads may use the same
/// `TypeInfo`.
class TypeInfo final : public ITypeInfo
{
public:
    /// \param interface one of the interfaces of `library`
    TypeInfo(TypeLibrary& library, const InterfaceDescription& interface)
        : m_library(&library), m_interface(interface)
    {}

    HRESULT QueryInterface(const GUID& riid, void** ppv) override;
    ULONG AddRef() override { return ++m_count; }
    ULONG Release() override;

    HRESULT GetTypeAttr(TYPEATTR** attributes) override;
    HRESULT GetTypeComp(ITypeComp** comp) override;
    HRESULT GetFuncDesc(UINT index, FUNCDESC** description) override;
    HRESULT GetVarDesc(UINT index, VARDESC** description) override;
    HRESULT GetNames(MEMBERID member, BSTR* names, UINT room, UINT* count) override;
    HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* type) override;
    HRESULT GetImplTypeFlags(UINT index, INT* flags) override;
    HRESULT GetIDsOfNames(wchar_t** names, UINT count, MEMBERID* identifiers) override;
    HRESULT Invoke(void* instance, MEMBERID member, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* badArgument) override;
    HRESULT GetDocumentation(MEMBERID member, BSTR* name, BSTR* documentation, DWORD* helpContext,
                             BSTR* helpFile) override;
    HRESULT GetDllEntry(MEMBERID member, INVOKEKIND kind, BSTR* dll, BSTR* name, WORD* ordinal) override;
    HRESULT GetRefTypeInfo(HREFTYPE type, ITypeInfo** typeInfo) override;
    HRESULT AddressOfMember(MEMBERID member, INVOKEKIND kind, void** address) override;
    HRESULT CreateInstance(IUnknown* outer, const GUID& riid, void** object) override;
    HRESULT GetMops(MEMBERID member, BSTR* mops) override;
    HRESULT GetContainingTypeLib(ITypeLib** library, UINT* index) override;
    void ReleaseTypeAttr(TYPEATTR* attributes) override;
    void ReleaseFuncDesc(FUNCDESC* description) override;
    void ReleaseVarDesc(VARDESC* description) override;

private:
    ~TypeInfo() = default;

    const kel::ComPtr<TypeLibrary> m_library;
    const InterfaceDescription& m_interface;
    std::atomic<ULONG> m_count{0};
};

} // namespace kelcom
