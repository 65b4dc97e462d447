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
const FUNCDESC& functionAt(ITypeInfo& info, UINT index)
{
    FUNCDESC* description = nullptr;
    EXPECT_EQ(info.GetFuncDesc(index, &description), S_OK);
    return *description;
}

const std::string kNodeIds =
    R"(nodeName 2 nodeValue 3 nodeType 4 parentNode 6 childNodes 7 firstChild 8 lastChild 9
    previousSibling 10 nextSibling 11 attributes 12 insertBefore 13 replaceChild 14 removeChild 15 appendChild 16
    hasChildNodes 17 ownerDocument 18 cloneNode 19 nodeTypeString 21 text 24 specified 22 definition 23
    nodeTypedValue 25 dataType 26 xml 27 transformNode 28 selectNodes 29 selectSingleNode 30 parsed 31
    namespaceURI 32 prefix 33 baseName 34 transformNodeToObject 35 )";

const std::string kNodeKinds = "224222222221111121224222424211122221";

struct Described
{
    GUID iid;
    const wchar_t* name;
    WORD tableSize;
    std::string kinds; ///< of every function: 1 a method, 2 a get, 4 a put, 8 a put by reference
    std::string ids;   ///< name and identifier of every member, in the same order
};
const Described kDescribed[] = {
    {IID_IXMLDOMNode, L"IXMLDOMNode", 344, kNodeKinds, kNodeIds},
    {IID_IXMLDOMDocument, L"IXMLDOMDocument", 608, kNodeKinds + "222811111111111122224111242424444",
     kNodeIds + R"(doctype 38 implementation 39 documentElement 40 createElement 41 createDocumentFragment 42
        createTextNode 43 createComment 44 createCDATASection 45 createProcessingInstruction 46 createAttribute 47
        createEntityReference 49 getElementsByTagName 50 createNode 54 nodeFromID 56 load 58 readyState -525
        parseError 59 url 60 async 61 abort 62 loadXML 63 save 64 validateOnParse 65 resolveExternals 66
        preserveWhiteSpace 67 onreadystatechange 68 ondataavailable 69 ontransformnode 70)"},
    {IID_IXMLDOMElement, L"IXMLDOMElement", 416, kNodeKinds + "211111111",
     kNodeIds + R"(tagName 97 getAttribute 99 setAttribute 100 removeAttribute 101 getAttributeNode 102
        setAttributeNode 103 removeAttributeNode 104 getElementsByTagName 105 normalize 106)"},
    {IID_IXMLDOMAttribute, L"IXMLDOMAttribute", 368, kNodeKinds + "224", kNodeIds + "name 118 value 120"},
    {IID_IXMLDOMNodeList, L"IXMLDOMNodeList", 96, "22111",
     "item 0 length 74 nextNode 76 reset 77 _newEnum -4"},
    {IID_IXMLDOMNamedNodeMap, L"IXMLDOMNamedNodeMap", 136, "1112211111",
     R"(getNamedItem 83 setNamedItem 84 removeNamedItem 85 item 0 length 74 getQualifiedItem 87
        removeQualifiedItem 88 nextNode 89 reset 90 _newEnum -4)"},
};

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

TEST(XmlDomLibrary, ListsEveryFunctionInSlotOrderUnderItsPublishedIdentifier)
{
    for (const Described& expected : kDescribed) {
        SCOPED_TRACE(::testing::Message() << expected.name);
        const auto info = domInfo(expected.iid);
        ASSERT_TRUE(info);
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
        EXPECT_EQ(attributes->guid, expected.iid);
        EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
        EXPECT_EQ(attributes->cFuncs, expected.kinds.size());
        EXPECT_EQ(attributes->cbSizeVft, expected.tableSize);
        EXPECT_EQ(attributes->wTypeFlags, 0x1040);
        EXPECT_EQ(attributes->wMajorVerNum * 10 + attributes->wMinorVerNum, 10);
        info->ReleaseTypeAttr(attributes);
        EXPECT_EQ(nameOf(*info, MEMBERID_NIL), expected.name);

        std::istringstream ids(expected.ids);
        std::string name;
        std::string kinds;
        for (MEMBERID id = 0; ids >> name >> id;) {
            const std::wstring wide(name.begin(), name.end());
            EXPECT_EQ(idOf(*info, wide), id) << name;
            EXPECT_EQ(nameOf(*info, id), wide);
            FUNCDESC* next = nullptr;
            while (info->GetFuncDesc(static_cast<UINT>(kinds.size()), &next) == S_OK && next->memid == id)
                kinds += std::to_string(next->invkind);
        }
        EXPECT_EQ(kinds, expected.kinds);
    }
}

TEST(XmlDomLibrary, DescribesFunctionsByTheirPublishedKindsAndTypes)
{
    // The kind, and for each parameter a star for each pointer, the type, which of the library's it is, and
    // the flags.
    const auto described = [](const GUID& iid, UINT index) {
        const auto info = domInfo(iid);
        const FUNCDESC& function = functionAt(*info, index);
        std::string words = std::to_string(function.invkind);
        for (SHORT place = 0; place < function.cParams; ++place) {
            const ELEMDESC& parameter = function.lprgelemdescParam[place];
            const TYPEDESC* type = &parameter.tdesc;
            words += ", ";
            for (; type->vt == VT_PTR; type = type->lptdesc)
                words += '*';
            words += std::to_string(type->vt);
            words += type->vt == VT_USERDEFINED ? "#" + std::to_string(type->hreftype) : "";
            words += " " + std::to_string(parameter.paramdesc.wParamFlags);
        }
        return words;
    };
    EXPECT_EQ(described(IID_IXMLDOMNode, 0), "2, *8 10");
    EXPECT_EQ(described(IID_IXMLDOMNode, 2), "4, 12 1");
    EXPECT_EQ(described(IID_IXMLDOMNode, 3), "2, *29#15 10")
        << "an enumeration is none of the six interfaces";
    EXPECT_EQ(described(IID_IXMLDOMNode, 11), "1, *29#0 1, 12 1, **29#0 10") << "a node is the first of them";
    EXPECT_EQ(described(IID_IXMLDOMNode, 15), "1, *11 10");
    EXPECT_EQ(described(IID_IXMLDOMDocument, 39), "8, *29#2 1");
    EXPECT_EQ(described(IID_IXMLDOMNodeList, 1), "2, *22 10");
    EXPECT_EQ(described(IID_IXMLDOMNodeList, 4), "1, *13 10");
    EXPECT_EQ(functionAt(*domInfo(IID_IXMLDOMNode), 11).elemdescFunc.tdesc.vt, VT_HRESULT);
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
    const auto names = [&](MEMBERID member, UINT room) {
        std::vector<kel::Bstr> given(room + 1);
        UINT count = 99;
        EXPECT_EQ(document->GetNames(member, reinterpret_cast<BSTR*>(given.data()), room, &count), S_OK);
        std::wstring all;
        for (const kel::Bstr& name : given)
            all += name ? std::wstring(name.c_str()) + L"," : L"";
        return all + std::to_wstring(count);
    };
    EXPECT_EQ(names(54, 9), L"createNode,type,name,namespaceURI,node,5");
    EXPECT_EQ(names(54, 2), L"createNode,type,2");
    EXPECT_EQ(names(54, 0), L"0");
    EXPECT_EQ(names(68, 9), L"onreadystatechange,1") << "a put's value has no name";
    EXPECT_EQ(names(62, 9), L"abort,1");

    BSTR name = nullptr;
    UINT count = 99;
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
    EXPECT_EQ(keltest::walkLibrary(*library, [](bool holds) { EXPECT_TRUE(holds); }),
              36U + 69U + 45U + 39U + 5U + 10U);
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
