// The type-library service's registry, and what the XML DOM's library says of the six interfaces.

#include "KelXmlLib/guids.h"
#include "support/type_library_walk.h"

#include <gtest/gtest.h>
#include <sstream>

using keltest::idOf;
using keltest::nameOf;

namespace
{

constexpr GUID kUnknownGuid{0x12345678, 0, 0, {}};

kel::ComPtr<ITypeInfo> domInfo(const GUID& iid)
{
    return keltest::typeInfo(L"" KEL_TYPE_LIBRARY, iid);
}

/// An interface in a line: what its identifier begins with, its name, kind, functions, bytes of slots, flags,
/// version.
std::string lineOf(ITypeInfo& info)
{
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(info.GetTypeAttr(&attributes), S_OK);
    std::ostringstream line;
    line << std::hex << attributes->guid.Data1 << std::dec << ' '
         << QString::fromStdWString(nameOf(info, MEMBERID_NIL)).toStdString() << ' ' << attributes->typekind
         << ' ' << attributes->cFuncs << ' ' << attributes->cbSizeVft << ' ' << attributes->wTypeFlags << ' '
         << attributes->wMajorVerNum << ' ' << attributes->wMinorVerNum;
    info.ReleaseTypeAttr(attributes);
    return line.str() + '\n';
}

/// A function in a line: its identifier, its kind (1 a method, 2 a get, 4 a put, 8 a put by reference), the
/// names of the member and its parameters; and for each parameter its flags, a star for each pointer, its
/// type, and which of the library's types that is.
std::string lineOf(ITypeInfo& info, const FUNCDESC& function)
{
    std::ostringstream line;
    line << function.memid << ' ' << function.invkind;
    std::array<kel::Bstr, kelcom::kMaxArguments + 2> names;
    UINT count = 0;
    EXPECT_EQ(info.GetNames(function.memid, names[0].put(), static_cast<UINT>(names.size()), &count), S_OK);
    for (UINT place = 0; place < count; ++place)
        line << ' ' << QString::fromWCharArray(names[place].c_str()).toStdString();
    for (SHORT place = 0; place < function.cParams; ++place) {
        const ELEMDESC& parameter = function.lprgelemdescParam[place];
        line << ", " << parameter.paramdesc.wParamFlags << ' ';
        const TYPEDESC* type = &parameter.tdesc;
        for (; type->vt == VT_PTR; type = type->lptdesc)
            line << '*';
        line << type->vt;
        if (type->vt == VT_USERDEFINED)
            line << '#' << type->hreftype;
    }
    EXPECT_EQ(function.elemdescFunc.tdesc.vt, VT_HRESULT);
    return line.str() + '\n';
}

} // namespace

TEST(TypeLibraryRegistry, KeepsOnePathPerIdentifierUntilItIsTakenBack)
{
    using namespace KelTypelib;
    std::wstring buffer(PathCapacity + 1, L'#');
    const auto stored = [&] {
        buffer.assign(buffer.size(), L'#');
        return GetTlbFilePath(kUnknownGuid, buffer.data());
    };
    EXPECT_EQ(stored(), TYPE_E_LIBNOTREGISTERED);
    EXPECT_EQ(buffer, std::wstring(PathCapacity + 1, L'#'));
    EXPECT_EQ(GetTlbFilePath(kUnknownGuid, nullptr), E_POINTER);
    EXPECT_EQ(UnRegisterTypeLib(kUnknownGuid), TYPE_E_LIBNOTREGISTERED);

    EXPECT_EQ(RegisterTypeLib(kUnknownGuid, L"/no/such/file"), S_OK);
    for (const std::wstring& refused : {std::wstring(), std::wstring(PathCapacity, L'x')})
        EXPECT_EQ(RegisterTypeLib(kUnknownGuid, refused.c_str()), E_INVALIDARG);
    EXPECT_EQ(RegisterTypeLib(kUnknownGuid, nullptr), E_INVALIDARG);
    EXPECT_EQ(stored(), S_OK);
    EXPECT_STREQ(buffer.c_str(), L"/no/such/file") << "a refused path replaces nothing";

    const std::wstring longest(PathCapacity - 1, L'y');
    EXPECT_EQ(RegisterTypeLib(kUnknownGuid, longest.c_str()), S_OK);
    EXPECT_EQ(stored(), S_OK);
    EXPECT_STREQ(buffer.c_str(), longest.c_str());
    EXPECT_EQ(buffer[PathCapacity], L'#') << "nothing is written past the buffer";

    EXPECT_EQ(UnRegisterTypeLib(kUnknownGuid), S_OK);
    EXPECT_EQ(stored(), TYPE_E_LIBNOTREGISTERED);
}

TEST(XmlDomLibrary, DescribesEveryFunctionInSlotOrderAsListed)
{
    ITypeLib* library = nullptr;
    ASSERT_EQ(KelTypelib::LoadTypeLib(L"" KEL_TYPE_LIBRARY, &library), S_OK);
    std::string all;
    const auto describe = [&all](ITypeInfo& info, const FUNCDESC& function) {
        all += (function.oVft == kelcom::kDispatchSlots * kelcom::kSlotSize ? lineOf(info) : "") +
               lineOf(info, function);
    };
    keltest::walkLibrary(
        *library, [](bool holds) { EXPECT_TRUE(holds); }, describe);
    QFile listed(QStringLiteral(KEL_TYPE_LIBRARY_LISTED));
    ASSERT_TRUE(listed.open(QIODevice::ReadOnly));
    EXPECT_EQ(listed.readAll().toStdString(), all);
}

TEST(TypeInfo, MapsNamesInAnyCapitalsAndTellsEachUnknownOne)
{
    const auto document = domInfo(IID_IXMLDOMDocument);
    const auto ids = [&](std::vector<std::wstring> names, HRESULT expected) {
        std::vector<wchar_t*> pointers;
        for (std::wstring& name : names)
            pointers.push_back(name.data());
        std::vector<MEMBERID> found(names.size(), 777);
        EXPECT_EQ(document->GetIDsOfNames(pointers.data(), static_cast<UINT>(found.size()), found.data()),
                  expected);
        return found;
    };
    using Ids = std::vector<MEMBERID>;
    EXPECT_EQ(ids({L"LOADxml"}, S_OK), Ids{63});
    EXPECT_EQ(ids({L"createNode", L"NAMESPACEuri", L"type", L"name"}, S_OK), (Ids{54, 2, 0, 1}));
    EXPECT_EQ(ids({L"createNode", L"none", L"name", L"node"}, DISP_E_UNKNOWNNAME), (Ids{54, -1, 1, -1}));
    EXPECT_EQ(ids({L"async", L"async"}, DISP_E_UNKNOWNNAME), (Ids{61, -1})) << "a put's value has no name";
    for (const std::wstring& unknown : {std::wstring(L"none"), std::wstring(), std::wstring(L"loadXM"),
                                        std::wstring(L"lo\u00E4d"), std::wstring(100000, L'x')})
        EXPECT_EQ(ids({unknown, L"type"}, DISP_E_UNKNOWNNAME), (Ids{-1, -1}));

    MEMBERID id = 777;
    wchar_t* names[] = {nullptr};
    EXPECT_EQ(document->GetIDsOfNames(names, 1, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(document->GetIDsOfNames(names, 0, &id), E_INVALIDARG);
    EXPECT_EQ(document->GetIDsOfNames(nullptr, 1, &id), E_POINTER);
    EXPECT_EQ(document->GetIDsOfNames(names, 1, nullptr), E_POINTER);
}

TEST(TypeInfo, GivesNamesOfMembersAndParametersAndNothingOfWhatItLacks)
{
    const auto document = domInfo(IID_IXMLDOMDocument);
    kel::Bstr names[3];
    UINT count = 99;
    EXPECT_EQ(document->GetNames(54, names[0].put(), 2, &count), S_OK);
    EXPECT_EQ(count, 2U) << "no more than there is room for";
    EXPECT_STREQ(names[1].c_str(), L"type");
    EXPECT_FALSE(names[2]);
    BSTR name = nullptr;
    EXPECT_EQ(document->GetNames(54, &name, 0, &count), S_OK);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(name, nullptr);
    count = 99;
    EXPECT_EQ(document->GetNames(9999, &name, 1, &count), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(document->GetNames(54, nullptr, 1, &count), E_POINTER);
    EXPECT_EQ(document->GetNames(54, &name, 1, nullptr), E_POINTER);

    DWORD context = 9;
    kel::Bstr text(L"before");
    BSTR help = text.get();
    EXPECT_EQ(document->GetDocumentation(54, nullptr, nullptr, &context, &help), S_OK);
    EXPECT_EQ(context, 0U);
    EXPECT_EQ(help, nullptr);
    EXPECT_EQ(document->GetDocumentation(9999, &name, nullptr, nullptr, nullptr), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(document->GetTypeAttr(nullptr), E_POINTER);
    EXPECT_EQ(document->GetFuncDesc(0, nullptr), E_POINTER);
    EXPECT_EQ(document->GetContainingTypeLib(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(document->GetVarDesc(0, nullptr), E_NOTIMPL);
}

TEST(TypeLibrary, HandsOutWhatItHoldsWithBalancedReferences)
{
    ITypeLib* library = nullptr;
    ASSERT_EQ(KelTypelib::LoadTypeLib(L"" KEL_TYPE_LIBRARY, &library), S_OK);
    const auto count = [library] {
        library->AddRef();
        return library->Release();
    };
    const ULONG before = count();
    {
        kel::ComPtr<ITypeInfo> info;
        ASSERT_EQ(library->GetTypeInfo(1, info.put()), S_OK);
        for (const GUID& iid : {IID_IUnknown, IID_ITypeInfo}) {
            void* same = nullptr;
            EXPECT_EQ(info->QueryInterface(iid, &same), S_OK);
            EXPECT_EQ(same, info.get());
            EXPECT_EQ(info->Release(), 1U);
        }
        void* none = &library;
        EXPECT_EQ(info->QueryInterface(IID_IDispatch, &none), E_NOINTERFACE);
        EXPECT_EQ(none, nullptr);
        EXPECT_EQ(info->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
        EXPECT_EQ(library->QueryInterface(IID_ITypeLib, &none), S_OK);
        EXPECT_EQ(library->Release(), before + 1);
        EXPECT_EQ(library->GetTypeInfoOfGuid(kUnknownGuid, info.put()), TYPE_E_ELEMENTNOTFOUND);
    }
    EXPECT_EQ(count(), before);

    TLIBATTR* attributes = nullptr;
    EXPECT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->wMajorVerNum * 10 + attributes->wMinorVerNum, 10);
    EXPECT_EQ(attributes->guid, LIBID_MSXML);
    kel::Bstr name;
    EXPECT_EQ(library->GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_STREQ(name.c_str(), L"MSXML");
    for (const INT index : {-2, 6})
        EXPECT_EQ(library->GetDocumentation(index, nullptr, nullptr, nullptr, nullptr),
                  TYPE_E_ELEMENTNOTFOUND);
}
