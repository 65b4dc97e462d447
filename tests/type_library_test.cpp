// Type libraries: the registry of their files, loading, files that are none or contradict themselves, and
// what the XML DOM's library says of the six interfaces.

#include "KelXmlLib/guids.h"
#include "support/type_library_walk.h"

#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <vector>

using namespace keltest;

namespace
{

constexpr GUID kUnknownGuid{0x12345678, 0, 0, {}};

std::string described(ITypeLib& library)
{
    return describe(library, [](bool holds) { EXPECT_TRUE(holds); });
}

const QByteArray kSmallBody = R"(
  <identity name='Small' uuid='00000000-0000-0000-0000-000000000001' version='2.5'/>
  <!-- here -->
  <external name='IOther' uuid='00000000-0000-0000-0000-000000000002'/>
  <enum name='Kind'/>
  <interface name='IFirst' uuid='00000000-0000-0000-0000-000000000003' base='IDispatch'>
    <member name='size' id='1' kind='propget'><param name='size' type='int' dir='retval'/></member>
    <member name='size' id='1' kind='propput'><param name='size' type='int' dir='in'/></member>
    <member name='find' id='2' kind='method'><param name='what' type='BSTR' dir='in'/><param name='kind' type='Kind' dir='in' optional='true'/><param name='found' type='ISecond' dir='retval'/></member>
  </interface>
  <interface name='ISecond' uuid='00000000-0000-0000-0000-000000000004' base='IFirst'>
    <member name='other' id='3' kind='propputref'><param name='other' type='IOther' dir='in'/></member>
  </interface></library>
)";

TEST(TypeLibraryRegistry, KeepsOnePathPerIdentifierUntilItIsTakenBack)
{
    using namespace KelTypelib;
    const std::wstring untouched(PathCapacity + 1, L'#'), longest(PathCapacity - 1, L'y');
    const auto expectStored = [&](const wchar_t* path) {
        std::wstring buffer = untouched;
        EXPECT_EQ(path ? S_OK : TYPE_E_LIBNOTREGISTERED, GetTlbFilePath(kUnknownGuid, buffer.data()));
        EXPECT_STREQ(path ? path : untouched.c_str(), buffer.c_str());
        EXPECT_EQ(L'#', buffer[PathCapacity]) << "nothing is written past the buffer";
    };
    expectStored(nullptr);
    EXPECT_EQ(E_POINTER, GetTlbFilePath(kUnknownGuid, nullptr));
    EXPECT_EQ(TYPE_E_LIBNOTREGISTERED, UnRegisterTypeLib(kUnknownGuid));
    for (const wchar_t* const path : {L"/no/such/file", longest.c_str()}) {
        EXPECT_EQ(S_OK, RegisterTypeLib(kUnknownGuid, path));
        for (const wchar_t* const refused :
             {L"", untouched.c_str() + 1, static_cast<const wchar_t*>(nullptr)})
            EXPECT_EQ(E_INVALIDARG, RegisterTypeLib(kUnknownGuid, refused));
        expectStored(path);
    }
    EXPECT_EQ(S_OK, UnRegisterTypeLib(kUnknownGuid));
    expectStored(nullptr);
}

TEST(TypeLibraryCache, ReadsAFileOnceAndAnewWhenItIsRegisteredAgain)
{
    TypeLibraryFile file(stamped(kSmallBody));
    ITypeLib *first = nullptr, *again = nullptr, *changed = nullptr;
    ASSERT_EQ(S_OK, file.load(&first));
    file.registerAgain();
    ASSERT_EQ(S_OK, file.load(&again));
    EXPECT_EQ(first, again) << "the same contents";
    QFile::remove(file.path());
    again = nullptr;
    ASSERT_EQ(S_OK, file.load(&again)) << "the system is not asked";
    EXPECT_EQ(first, again);

    const std::string before = described(*first);
    file.write("damaged");
    file.registerAgain();
    EXPECT_EQ(TYPE_E_INVDATAREAD, file.load(&again));
    QFile::remove(file.path());
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, file.load(&again)) << "tried again without another registration";
    EXPECT_EQ(first, again) << "written on success only";
    file.write(stamped(QByteArray(kSmallBody).replace("'find'", "'look'")));
    ASSERT_EQ(S_OK, file.load(&changed));
    EXPECT_NE(before, described(*changed));
    EXPECT_EQ(before, described(*first)) << "a borrowed library stays usable";
}

TEST(TypeLibraryFiles, WhatIsNoReadableRegularFileOfSensibleSizeIsRefused)
{
    const QTemporaryDir directory;
    const std::string inside = directory.path().toStdString() + '/';
    ASSERT_EQ(0, ::mkfifo((inside + "pipe").c_str(), 0600));
    for (const char* name : {"empty", "enormous"}) {
        QFile made(directory.filePath(QString::fromUtf8(name)));
        ASSERT_TRUE(made.open(QIODevice::WriteOnly) && made.resize(*(name + 1) == 'n' ? qint64{1} << 40 : 0));
    }
    ITypeLib* library = nullptr;
    for (const std::string& path :
         {inside + "missing", inside, std::string("/dev/zero"), inside + "pipe", std::string(),
          std::string(5000, 'x'), inside + "empty", inside + "enormous"}) {
        const bool isRegular = path == inside + "empty" || path == inside + "enormous";
        EXPECT_EQ(isRegular ? TYPE_E_INVDATAREAD : TYPE_E_CANTLOADLIBRARY,
                  KelTypelib::LoadTypeLib(std::wstring(path.begin(), path.end()).c_str(), &library))
            << path;
        EXPECT_EQ(nullptr, library);
    }
    EXPECT_EQ(E_POINTER, KelTypelib::LoadTypeLib(nullptr, &library));
    EXPECT_EQ(E_POINTER, KelTypelib::LoadTypeLib(L"x", nullptr));
    EXPECT_EQ(S_OK, KelTypelib::LoadTypeLib(L"" KEL_TYPE_LIBRARY, &library)) << "none the worse for it";
}

TEST(TypeLibraryFiles, CutShortOrChangedInOneByteIsRefused)
{
    const QByteArray whole = contentOf(KEL_TYPE_LIBRARY);
    TypeLibraryFile file;
    for (int length = 0; length < whole.size(); length += length < 300 ? 1 : 37) {
        file.write(whole.left(length));
        ASSERT_EQ(TYPE_E_INVDATAREAD, file.load()) << length;
    }
    std::mt19937 random(20);
    for (unsigned round = 0; round < 2000; ++round) {
        // The head is not under the digest, so each of its bytes has its turn.
        const auto place =
            static_cast<int>(round < 200 ? round : random() % static_cast<unsigned>(whole.size()));
        QByteArray changed = whole;
        changed[place] = static_cast<char>(changed[place] ^ static_cast<char>(1 + random() % 255));
        file.write(changed);
        ASSERT_EQ(TYPE_E_INVDATAREAD, file.load()) << place;
    }
    file.write(whole);
    EXPECT_EQ(S_OK, file.load());
}

/// `type_library_changes.txt` has what to change in `kSmallBody` after `=`, what is refused in its place
/// after `-`, and what leaves the library whole after `+`.
TEST(TypeLibraryFiles, ContradictionsAndUnknownsAreRefused)
{
    TypeLibraryFile file;
    const auto expectLoad = [&file](HRESULT expected, const QByteArray& from, const QByteArray& to) {
        EXPECT_TRUE(kSmallBody.contains(from)) << from.toStdString();
        file.write(stamped(QByteArray(kSmallBody).replace(from, to)));
        file.registerAgain();
        EXPECT_EQ(expected, file.load()) << from.toStdString() << " -> " << to.left(100).toStdString();
    };
    QByteArray from;
    for (const QByteArray& line : contentOf(KEL_TESTS "type_library_changes.txt").split('\n'))
        if (line.startsWith('='))
            from = line.mid(2);
        else if (!line.isEmpty())
            expectLoad(line.startsWith('+') ? S_OK : TYPE_E_INVDATAREAD, from, line.mid(2));

    // As many as there may be of something, and one more.
    const struct
    {
        const char *from, *pattern, *after;
        int first, most;
    } bounds[] = {
        {"</interface></library>", "<member name='m%1' id='%1' kind='method'/>", "</interface></library>",
         1000, 508},
        {"<param name='what' type='BSTR' dir='in'/>", "<param name='p%1' type='int' dir='in'/>", "", 0, 7},
        {"here", "--><enum name='E%1'/><!--", "", 0, 246},
        {"here", "=", "", 0, 4088},
        {"find'", "n", "'", 0, 128},
    };
    for (const auto& bound : bounds)
        for (const int more : {0, 1}) {
            QString all;
            for (int number = bound.first; number < bound.first + bound.most + more; ++number)
                all +=
                    QString::fromLatin1(bound.pattern).replace(QLatin1String("%1"), QString::number(number));
            expectLoad(more ? TYPE_E_INVDATAREAD : S_OK, bound.from, all.toLatin1() + bound.after);
        }
}

TEST(XmlDomLibrary, DescribesEveryFunctionInSlotOrderAsListed)
{
    ITypeLib* library = nullptr;
    ASSERT_EQ(S_OK, KelTypelib::LoadTypeLib(L"" KEL_TYPE_LIBRARY, &library));
    EXPECT_EQ(contentOf(KEL_TESTS "type_library.txt").toStdString(), described(*library));
    TLIBATTR* attributes = nullptr;
    EXPECT_EQ(S_OK, library->GetLibAttr(&attributes));
    EXPECT_EQ(LIBID_MSXML, attributes->guid);
    for (const INT index : {-2, 6})
        EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND,
                  library->GetDocumentation(index, nullptr, nullptr, nullptr, nullptr));
}

TEST(TypeInfo, MapsNamesInAnyCapitalsAndTellsEachUnknownOne)
{
    const auto document = typeInfo(L"" KEL_TYPE_LIBRARY, IID_IXMLDOMDocument);
    using Ids = std::vector<MEMBERID>;
    const std::pair<std::vector<std::wstring>, Ids> cases[] = {
        {{L"createNode", L"NAMESPACEuri", L"type", L"name"}, {54, 2, 0, 1}},
        {{L"createNode", L"none", L"name", L"node"}, {54, -1, 1, -1}},
        {{L"", L"type"}, {-1, -1}},
        {{L"loadXM", L"type"}, {-1, -1}},
        {{L"lo\u00E4d", L"type"}, {-1, -1}},
        {{std::wstring(100000, L'x'), L"type"}, {-1, -1}},
    };
    for (auto [names, expected] : cases) {
        std::vector<wchar_t*> pointers;
        for (std::wstring& name : names)
            pointers.push_back(name.data());
        Ids found(names.size(), 777);
        const bool areAllKnown = std::find(expected.begin(), expected.end(), -1) == expected.end();
        EXPECT_EQ(areAllKnown ? S_OK : DISP_E_UNKNOWNNAME,
                  document->GetIDsOfNames(pointers.data(), static_cast<UINT>(found.size()), found.data()));
        EXPECT_EQ(expected, found);
    }
    MEMBERID id = 777;
    wchar_t* names[] = {nullptr};
    EXPECT_EQ(DISP_E_UNKNOWNNAME, document->GetIDsOfNames(names, 1, &id));
    EXPECT_EQ(E_INVALIDARG, document->GetIDsOfNames(names, 0, &id));
    EXPECT_EQ(E_POINTER, document->GetIDsOfNames(nullptr, 1, &id));
    EXPECT_EQ(E_POINTER, document->GetIDsOfNames(names, 1, nullptr));
}

TEST(TypeInfo, GivesNamesOfMembersAndParametersAndNothingOfWhatItLacks)
{
    const auto document = typeInfo(L"" KEL_TYPE_LIBRARY, IID_IXMLDOMDocument);
    kel::Bstr names[3];
    UINT count = 99;
    EXPECT_EQ(S_OK, document->GetNames(54, names[0].put(), 2, &count));
    EXPECT_EQ(2U, count) << "no more than there is room for";
    EXPECT_STREQ(L"type", names[1].c_str());
    EXPECT_FALSE(names[2]);
    EXPECT_EQ(S_OK, document->GetNames(54, names[2].put(), 0, &count));
    EXPECT_EQ(0U, count);
    EXPECT_FALSE(names[2]);
    count = 99;
    EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND, document->GetNames(9999, names[2].put(), 1, &count));
    EXPECT_EQ(0U, count);
    EXPECT_EQ(E_POINTER, document->GetNames(54, nullptr, 1, &count));
    EXPECT_EQ(E_POINTER, document->GetNames(54, names[2].put(), 1, nullptr));

    DWORD context = 9;
    const kel::Bstr text(L"before");
    BSTR help = text.get();
    EXPECT_EQ(S_OK, document->GetDocumentation(54, nullptr, nullptr, &context, &help));
    EXPECT_EQ(0U, context);
    EXPECT_EQ(nullptr, help);
    EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND,
              document->GetDocumentation(9999, names[2].put(), nullptr, nullptr, nullptr));
    EXPECT_EQ(E_POINTER, document->GetTypeAttr(nullptr));
    EXPECT_EQ(E_POINTER, document->GetFuncDesc(0, nullptr));
    EXPECT_EQ(E_POINTER, document->GetContainingTypeLib(nullptr, nullptr));
    EXPECT_EQ(E_NOTIMPL, document->GetVarDesc(0, nullptr));
}

TEST(TypeLibrary, HandsOutWhatItHoldsWithBalancedReferences)
{
    ITypeLib* library = nullptr;
    ASSERT_EQ(S_OK, KelTypelib::LoadTypeLib(L"" KEL_TYPE_LIBRARY, &library));
    const ULONG before = library->AddRef();
    {
        kel::ComPtr<ITypeInfo> info;
        ASSERT_EQ(S_OK, library->GetTypeInfo(1, info.put()));
        void* answer = nullptr;
        for (const GUID& iid : {IID_IUnknown, IID_ITypeInfo}) {
            EXPECT_EQ(S_OK, info->QueryInterface(iid, &answer));
            EXPECT_EQ(info.get(), answer);
            EXPECT_EQ(1U, info->Release());
        }
        EXPECT_EQ(E_NOINTERFACE, info->QueryInterface(IID_IDispatch, &answer));
        EXPECT_EQ(nullptr, answer);
        EXPECT_EQ(E_POINTER, info->QueryInterface(IID_IUnknown, nullptr));
        EXPECT_EQ(S_OK, library->QueryInterface(IID_ITypeLib, &answer));
        EXPECT_EQ(before + 1, library->Release());
        EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND, library->GetTypeInfoOfGuid(kUnknownGuid, info.put()));
    }
    EXPECT_EQ(before - 1, library->Release());
}

} // namespace
