// In which order the holder of the type information asks, gives back and frees. The program stands in for the
// type-library service and for `SysFreeString`, which note down how they are called.

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/dispatch_impl.h"
#include "support/allocations.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace
{

std::string notes;
HRESULT note(const std::string& what, HRESULT answer = S_OK)
{
    notes += what + ' ';
    return answer;
}

/// A library and its one interface, whose second function cannot be described, and whose third is named with
/// a failure.
struct Fake final : ITypeLib, ITypeInfo
{
    HRESULT GetTypeInfoOfGuid(const GUID&, ITypeInfo** typeInfo) override
    {
        *typeInfo = this;
        return note("info");
    }
    ULONG Release() override { return static_cast<ULONG>(note("release")); }
    HRESULT GetTypeAttr(TYPEATTR** lent) override
    {
        *lent = &attributes;
        return note("attributes", answer);
    }
    void ReleaseTypeAttr(TYPEATTR*) override { note("-attributes"); }
    HRESULT GetFuncDesc(UINT index, FUNCDESC** lent) override
    {
        function.memid = static_cast<MEMBERID>(index);
        *lent = &function;
        return note("function", index == 1 ? E_FAIL : S_OK);
    }
    void ReleaseFuncDesc(FUNCDESC*) override { note("-function"); }
    HRESULT GetDocumentation(INT member, BSTR* name, BSTR*, DWORD*, BSTR*) override
    {
        *name = names[member].text;
        return note("name", member == 2 ? E_FAIL : S_OK);
    }

    HRESULT QueryInterface(const GUID&, void**) override { return E_NOTIMPL; }
    ULONG AddRef() override { return 1; }
    UINT GetTypeInfoCount() override { return 1; }
    HRESULT GetTypeInfo(UINT, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetTypeInfoType(UINT, TYPEKIND*) override { return E_NOTIMPL; }
    HRESULT GetLibAttr(TLIBATTR**) override { return E_NOTIMPL; }
    HRESULT GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
    HRESULT IsName(wchar_t*, ULONG, INT*) override { return E_NOTIMPL; }
    HRESULT FindName(wchar_t*, ULONG, ITypeInfo**, MEMBERID*, USHORT*) override { return E_NOTIMPL; }
    void ReleaseTLibAttr(TLIBATTR*) override {}
    HRESULT GetVarDesc(UINT, VARDESC**) override { return E_NOTIMPL; }
    HRESULT GetNames(MEMBERID, BSTR*, UINT, UINT*) override { return E_NOTIMPL; }
    HRESULT GetRefTypeOfImplType(UINT, HREFTYPE*) override { return E_NOTIMPL; }
    HRESULT GetImplTypeFlags(UINT, INT*) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(wchar_t**, UINT, MEMBERID*) override { return note("ask", DISP_E_UNKNOWNNAME); }
    HRESULT Invoke(void*, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }
    HRESULT GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override { return E_NOTIMPL; }
    HRESULT GetRefTypeInfo(HREFTYPE, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT AddressOfMember(MEMBERID, INVOKEKIND, void**) override { return E_NOTIMPL; }
    HRESULT CreateInstance(IUnknown*, const GUID&, void**) override { return E_NOTIMPL; }
    HRESULT GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
    HRESULT GetContainingTypeLib(ITypeLib**, UINT*) override { return E_NOTIMPL; }
    void ReleaseVarDesc(VARDESC*) override {}

    struct
    {
        UINT length;
        wchar_t text[2];
    } names[4] = {{1, L"a"}, {1, L"b"}, {1, L"c"}, {1, L"d"}};
    TYPEATTR attributes{};
    FUNCDESC function{};
    HRESULT answer = S_OK;
} fake;

/// What a holder does from its first lookup to its end, and what the lookup finds.
std::string lifeOf(WORD functions, HRESULT answer = S_OK, std::size_t failingAllocation = 0)
{
    notes.clear();
    fake.attributes.cFuncs = functions;
    fake.answer = answer;
    {
        CComTypeInfoHolder holder(&IID_IUnknown, &IID_IUnknown, 1, 0);
        wchar_t name[] = L"a", *names[] = {name};
        DISPID id = DISPID_UNKNOWN;
        const allocations::FailAt failing(failingAllocation);
        holder.GetIDsOfNames(names, 1, 0, &id);
        note(std::to_string(id));
    }
    return notes;
}

} // namespace

/// Leaves something in the buffer, for the next one to be told from one that was cleared.
HRESULT KelTypelib::GetTlbFilePath(const GUID&, wchar_t* path)
{
    const bool isClear = std::all_of(path, path + PathCapacity, [](wchar_t unit) { return unit == 0; });
    std::fill_n(path, PathCapacity - 1, L'x');
    return note(isClear ? "zeros" : "remains");
}

HRESULT KelTypelib::LoadTypeLib(const wchar_t*, ITypeLib** library)
{
    *library = &fake;
    return S_OK;
}

void SysFreeString(BSTR text)
{
    if (text)
        note(std::string("free:") + static_cast<char>(*text));
}

TEST(TypeInfoHolder, GivesBackAndFreesInThePublishedOrder)
{
    notes.reserve(1000); // notes allocate nothing where an allocation is to fail
    EXPECT_EQ("zeros info attributes function name -function function function name -function free:c "
              "function name -function -attributes 0 release free:d free:a ",
              lifeOf(4));
    EXPECT_EQ("zeros info attributes -attributes ask -1 release ", lifeOf(0));
    EXPECT_EQ("zeros info attributes ask -1 release ", lifeOf(4, E_FAIL));
    if (allocations::kCanFail) {
        EXPECT_EQ("zeros info attributes -attributes ask -1 release ", lifeOf(4, S_OK, 1));
    }
}
