// An object that takes and gives back one value of each kind, the type library that describes it, and a
// fixture that calls it by identifier.

#pragma once

#include "type_library_file.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <vector>

namespace keltest
{

constexpr GUID kProbe{1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
constexpr GUID kPart{1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 2}};

inline const QByteArray kProbeLibrary = R"(
  <identity name="Probe" uuid="00000001-0000-0000-0000-000000000000" version="1.0"/>
  <external name="IPart" uuid="00000001-0000-0000-0000-000000000002"/>
  <enum name="Kind"/>
  <interface name="IProbe" uuid="00000001-0000-0000-0000-000000000001" base="IDispatch">
    <member name="text" id="1" kind="method"><param name="value" type="BSTR" dir="in"/><param name="result" type="BSTR" dir="retval"/></member>
    <member name="number" id="2" kind="method"><param name="value" type="int" dir="in"/><param name="result" type="int" dir="retval"/></member>
    <member name="flag" id="3" kind="method"><param name="value" type="VARIANT_BOOL" dir="in"/><param name="result" type="VARIANT_BOOL" dir="retval"/></member>
    <member name="kind" id="4" kind="method"><param name="value" type="Kind" dir="in"/><param name="result" type="Kind" dir="retval"/></member>
    <member name="any" id="5" kind="method"><param name="value" type="VARIANT" dir="in"/><param name="result" type="VARIANT" dir="retval"/></member>
    <member name="part" id="6" kind="method"><param name="value" type="IPart" dir="in"/><param name="result" type="IPart" dir="retval"/></member>
    <member name="object" id="7" kind="method"><param name="value" type="IUnknown" dir="in"/><param name="result" type="IUnknown" dir="retval"/></member>
    <member name="entry" id="0" kind="propget"><param name="index" type="int" dir="in"/><param name="entry" type="BSTR" dir="retval"/></member>
    <member name="entry" id="0" kind="propput"><param name="index" type="int" dir="in"/><param name="entry" type="BSTR" dir="in"/></member>
    <member name="entry" id="0" kind="propputref"><param name="index" type="int" dir="in"/><param name="entry" type="IUnknown" dir="in"/></member>
    <member name="many" id="-525" kind="method"><param name="first" type="BSTR" dir="in"/><param name="second" type="VARIANT" dir="in" optional="true"/><param name="third" type="int" dir="in" optional="true"/><param name="fourth" type="IPart" dir="in" optional="true"/></member>
    <member name="fail" id="9" kind="method"><param name="code" type="int" dir="in"/><param name="result" type="BSTR" dir="retval"/></member>
  </interface>
</library>
)";

/// Counts what is taken of it and answers two interfaces only.
class Part final : public IUnknown
{
public:
    HRESULT QueryInterface(const GUID& riid, void** ppv) override
    {
        *ppv = riid == IID_IUnknown || riid == kPart ? this : nullptr;
        if (!*ppv)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++count; }
    ULONG Release() override { return --count; }
    ULONG count = 1;
};

/// The described interface: from the eighth on, its slots are in the order of the members above.
class Probe final : public IDispatch
{
public:
    HRESULT QueryInterface(const GUID&, void**) override { return E_NOINTERFACE; }
    ULONG AddRef() override { return 1; }
    ULONG Release() override { return 1; }
    HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT GetIDsOfNames(const GUID&, wchar_t**, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT Invoke(DISPID, const GUID&, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }
    virtual HRESULT text(BSTR value, BSTR* result)
    {
        return give(result, [=] { return SysAllocStringLen(value, SysStringLen(value)); });
    }
    virtual HRESULT number(INT value, INT* result) { return giveSame(value, result); }
    virtual HRESULT flag(VARIANT_BOOL value, VARIANT_BOOL* result) { return giveSame(value, result); }
    virtual HRESULT kind(INT value, INT* result) { return giveSame(value, result); }
    virtual HRESULT any(VARIANT value, VARIANT* result) { return giveSame(value, result); }
    virtual HRESULT part(Part* value, Part** result) { return giveObject(value, result); }
    virtual HRESULT object(IUnknown* value, IUnknown** result) { return giveObject(value, result); }
    virtual HRESULT get_entry(INT index, BSTR* entry)
    {
        return give(entry, [=] { return SysAllocString(std::to_wstring(index).c_str()); });
    }
    virtual HRESULT put_entry(INT index, BSTR entry)
    {
        return note(L"put " + std::to_wstring(index) + L" " + entry);
    }
    virtual HRESULT putref_entry(INT index, IUnknown* entry)
    {
        return note(L"putref " + std::to_wstring(index) + (entry ? L" object" : L" null"));
    }
    virtual HRESULT many(BSTR first, VARIANT second, INT third, Part* fourth)
    {
        return note(std::wstring(first) + L"," + std::to_wstring(second.vt) + L":" +
                    std::to_wstring(second.scode) + L"," + std::to_wstring(third) + L"," +
                    (fourth ? L"part" : L"null"));
    }
    virtual HRESULT fail(INT code, BSTR*) { return code; }

    std::wstring seen;
    HRESULT answer = S_OK;
    bool isSilent = false;
    bool isThrowing = false;

private:
    template <class Result, class Make>
    HRESULT give(Result* result, Make make) const
    {
        if (isThrowing)
            throw std::runtime_error("from a member");
        if (!isSilent)
            *result = make();
        return answer;
    }
    template <class Value>
    HRESULT giveSame(Value value, Value* result) const
    {
        return give(result, [=] { return value; });
    }
    template <class Object>
    HRESULT giveObject(Object* value, Object** result) const
    {
        return give(result, [=] { return kel::ComPtr<Object>(value).detach(); });
    }
    HRESULT note(const std::wstring& what)
    {
        return give(&seen, [&] { return seen + what; });
    }
};

struct InvokeTest : testing::Test
{
    /// Calls with arguments in the order of `rgvarg`.
    HRESULT call(DISPID member, std::vector<VARIANT> arguments, WORD flags = DISPATCH_METHOD,
                 std::vector<DISPID> names = {})
    {
        DISPPARAMS parameters{arguments.data(), names.data(), static_cast<UINT>(arguments.size()),
                              static_cast<UINT>(names.size())};
        clear();
        badArgument = 77;
        return info->Invoke(&probe, member, flags, &parameters, &result, &exception, &badArgument);
    }
    void clear()
    {
        if (result.vt == VT_BSTR)
            SysFreeString(result.bstrVal);
        result = integer(4711);
    }
    /// The result as its type and value, in few letters.
    std::wstring shown() const
    {
        const std::wstring type = std::to_wstring(result.vt) + L":";
        switch (result.vt) {
        case VT_BSTR:
            return type + (result.bstrVal ? result.bstrVal : L"null");
        case VT_BOOL:
            return type + std::to_wstring(result.boolVal);
        case VT_EMPTY:
            return L"empty";
        default:
            return type + std::to_wstring(result.lVal);
        }
    }
    ~InvokeTest() override { clear(); }

    template <class Value>
    static VARIANT variant(int type, Value VARIANT::*member, Value value)
    {
        VARIANT made{};
        made.vt = static_cast<VARTYPE>(type);
        made.*member = value;
        return made;
    }
    static VARIANT integer(LONG value, int type = VT_I4) { return variant(type, &VARIANT::lVal, value); }
    static VARIANT real(double value, int type = VT_R8) { return variant(type, &VARIANT::dblVal, value); }
    static VARIANT currency(std::int64_t value) { return variant(VT_CY, &VARIANT::llVal, value); }
    /// Lives as long as the test program, as an argument of many calls.
    static VARIANT text(const wchar_t* value)
    {
        static std::vector<kel::Bstr> kept;
        return variant(VT_BSTR, &VARIANT::bstrVal, kept.emplace_back(value).get());
    }
    static VARIANT object(IUnknown* value) { return variant(VT_DISPATCH, &VARIANT::punkVal, value); }
    static VARIANT reference(int type, void* place)
    {
        return variant(VT_BYREF | type, &VARIANT::byref, place);
    }
    static VARIANT omitted() { return integer(DISP_E_PARAMNOTFOUND, VT_ERROR); }

    inline static const TypeLibraryFile* file = nullptr;
    static void SetUpTestSuite() { file = new TypeLibraryFile(stamped(kProbeLibrary)); }
    static void TearDownTestSuite() { delete file; }

    Probe probe;
    Part part;
    VARIANT result = integer(4711);
    EXCEPINFO exception{};
    UINT badArgument = 0;
    const kel::ComPtr<ITypeInfo> info = typeInfo(file->widePath(), kProbe);
};

constexpr DISPID kText = 1, kNumber = 2, kFlag = 3, kKind = 4, kAny = 5, kPartMember = 6, kObject = 7,
                 kEntry = 0, kMany = -525, kFail = 9;

} // namespace keltest
