// Type libraries: registration, loading, invalid and inconsistent files, and the type library of the XML DOM.

#include "support/objects.h"
#include "support/type_library_walk.h"
#include "support/variant_text.h"

#include <QtCore/QRegularExpression>

#include <atomic>
#include <cxxabi.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace keltest;

namespace
{

constexpr GUID kUnknownGuid{0x12345678, 0, 0, {}};

const QByteArray kSmallBody = contentOf(QStringLiteral(KEL_TESTS "../fuzz/seeds/type_library/small.xml"));

std::function<void()> whileReading; ///< called once, when the library next reads a file

TEST(TypeLibraryRegistry, KeepsOnePathPerIdentifierUntilItIsRemoved)
{
    using namespace KelTypelib;
    const std::wstring untouched(PathCapacity + 1, L'#'), longest(PathCapacity - 1, L'y');
    const auto expectStored = [&](const wchar_t* path) {
        std::wstring buffer = untouched;
        EXPECT_EQ(path ? S_OK : TYPE_E_LIBNOTREGISTERED, GetTlbFilePath(kUnknownGuid, buffer.data()));
        EXPECT_STREQ(path ? path : untouched.c_str(), buffer.c_str());
        EXPECT_EQ(L'#', buffer[PathCapacity]) << "GetTlbFilePath must not write beyond its buffer";
    };
    for (const wchar_t* const path : {L"/no/such/file", longest.c_str()}) {
        EXPECT_EQ(S_OK, RegisterTypeLib(kUnknownGuid, path));
        for (const wchar_t* const refused : {L"", untouched.c_str() + 1})
            EXPECT_EQ(E_INVALIDARG, RegisterTypeLib(kUnknownGuid, refused));
        expectStored(path);
    }
    EXPECT_EQ(S_OK, UnRegisterTypeLib(kUnknownGuid));
    EXPECT_EQ(TYPE_E_LIBNOTREGISTERED, UnRegisterTypeLib(kUnknownGuid));
    expectStored(nullptr);
}

TEST(TypeLibraryCache, ReadsAFileOnceAndAgainAfterItIsRegisteredAgain)
{
    const TypeLibraryFile file(stamped(kSmallBody));
    ITypeLib *first = nullptr, *again = nullptr;
    ASSERT_EQ(S_OK, file.load(first));
    file.registerAgain();
    ASSERT_EQ(S_OK, file.load(again));
    EXPECT_EQ(first, again) << "the same contents must give the same object";
    QFile::remove(file.path);
    again = nullptr;
    ASSERT_EQ(S_OK, file.load(again)) << "a cached library must load without its file";
    EXPECT_EQ(first, again);

    const std::wstring before = describe(*first);
    file.write("damaged");
    file.registerAgain();
    EXPECT_EQ(TYPE_E_INVDATAREAD, file.load(again));
    QFile::remove(file.path);
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, file.load(again)) << "a failure must not be cached";
    EXPECT_EQ(first, again) << "a failure must write no output";
    file.write(stamped(QByteArray(kSmallBody).replace("'find'", "'look'")));
    ASSERT_EQ(S_OK, file.load(again));
    EXPECT_NE(before, describe(*again));
    EXPECT_EQ(before, describe(*first)) << "the earlier library must stay usable";
    file.write(stamped(kSmallBody));
    file.registerAgain();
    ASSERT_EQ(S_OK, file.load(again));
    EXPECT_EQ(first, again) << "contents that were loaded before must give the earlier object";
}

/// Looks up a type library in a forked process. A signal ends the forked process if the lookup hangs.
void expectLookupInAForkedProcess()
{
    if (::fork() == 0) {
        ::alarm(3);
        wchar_t path[KelTypelib::PathCapacity];
        KelTypelib::GetTlbFilePath(kUnknownGuid, path);
        ::_exit(0);
    }
    int status = 1;
    ::wait(&status);
    EXPECT_EQ(0, status) << "the lookup in the forked process must return within 3 seconds";
}

TEST(TypeLibraryLock, IsNotHeldWhileAFileIsRead)
{
    const TypeLibraryFile file(stamped(kSmallBody));
    whileReading = expectLookupInAForkedProcess;
    ITypeLib* library = nullptr;
    EXPECT_EQ(S_OK, file.load(library));
    EXPECT_FALSE(whileReading) << "the load must read the file";
}

TEST(TypeLibraryLock, IsFreeInAForkedProcessWhateverOtherThreadsDo)
{
    std::atomic<bool> isDone{false};
    std::thread other([&] {
        while (!isDone)
            KelTypelib::RegisterTypeLib(kUnknownGuid, L"/no/such/file");
    });
    for (int round = 0; round < 100 && !HasFailure(); ++round)
        expectLookupInAForkedProcess();
    isDone = true;
    other.join();
}

TEST(TypeLibraryFiles, OnlyReadableRegularFilesUpToTheLimitAreRead)
{
    const QTemporaryDir directory;
    const std::string inside = directory.path().toStdString() + '/';
    const std::string empty = inside + "empty", pipe = inside + "pipe";
    const std::ofstream made(empty);
    ASSERT_EQ(0, ::mkfifo(pipe.c_str(), 0600));
    ITypeLib* library = nullptr;
    for (const std::string& path : {inside + "missing", inside, std::string("/dev/zero"), pipe, std::string(),
                                    std::string(5000, 'x'), empty}) {
        EXPECT_EQ(path == empty ? TYPE_E_INVDATAREAD : TYPE_E_CANTLOADLIBRARY,
                  KelTypelib::LoadTypeLib(std::wstring(path.begin(), path.end()).c_str(), &library))
            << path;
        EXPECT_EQ(nullptr, library) << path;
    }

    const TypeLibraryFile file;
    const std::wstring beyond = file.widePath + L'\x80010041'; // Qt would read this as U+10041
    QFile::copy(file.path, QString::fromStdWString(beyond));
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, KelTypelib::LoadTypeLib(beyond.c_str(), &library));
    for (const int size : {1 << 20, (1 << 20) + 1}) {
        QByteArray body = kSmallBody + QByteArray("<!---->").repeated(149500);
        body.append(size - stamped(body).size(), ' ');
        file.write(stamped(body));
        file.registerAgain();
        EXPECT_EQ(size == 1 << 20 ? S_OK : TYPE_E_INVDATAREAD, file.load(library)) << size << " bytes";
    }
}

TEST(TypeLibraryFiles, TruncatedOrChangedInOneByteAreRefused)
{
    const QByteArray whole = contentOf(QStringLiteral(KEL_TYPE_LIBRARY));
    const TypeLibraryFile file;
    ITypeLib* library = nullptr;
    // The loop visits every byte of the head, which the digest does not cover, and every 17th byte of the
    // rest. The head ends before byte 300. For each visited byte, the loop tests a file in which this byte is
    // changed and a file that ends before this byte.
    for (int place = 0; place < whole.size(); place += place < 300 ? 1 : 17) {
        QByteArray changed = whole;
        changed[place] = static_cast<char>(changed[place] ^ static_cast<char>(1 + place % 255));
        for (const QByteArray& damaged : {changed, whole.left(place)}) {
            file.write(damaged);
            ASSERT_EQ(TYPE_E_INVDATAREAD, file.load(library)) << "byte " << place;
        }
    }
    file.write(whole);
    EXPECT_EQ(S_OK, file.load(library));
}

TEST(TypeLibraryFiles, WithInconsistentOrUnknownDeclarationsAreRefused)
{
    const TypeLibraryFile file;
    QByteArray from;
    forEachRow(KEL_TESTS "type_library_changes.txt", [&](Row row) {
        char sign = 0;
        std::string text;
        std::getline(row >> sign >> std::ws, text);
        if (sign == '=') {
            from = QByteArray::fromStdString(text);
            EXPECT_TRUE(kSmallBody.contains(from)) << row.where;
            return;
        }
        file.write(stamped(QByteArray(kSmallBody).replace(from, expand(text, 0).toUtf8())));
        file.registerAgain();
        ITypeLib* library = nullptr;
        EXPECT_EQ(sign == '+' ? S_OK : TYPE_E_INVDATAREAD, file.load(library))
            << row.where << ", instead of " << from.toStdString();
    });
}

/// Demangles a method's symbol and removes the class name. Writes "other" for each type that the type library
/// does not describe.
std::string declarationOf(const std::string& symbol)
{
    static const QRegularExpression others(QStringLiteral(
        R"(tagDOMNodeType|IXMLDOM(?!(Node|Document|Element|Attribute|NodeList|NamedNodeMap)\b)\w+)"));
    const std::unique_ptr<char, decltype(&std::free)> whole(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, nullptr), &std::free);
    const QString text = QString::fromLatin1(whole.get());
    return text.mid(text.indexOf(QLatin1String("::")) + 2)
        .replace(others, QStringLiteral("other"))
        .toStdString();
}

TEST(XmlDomLibrary, HasThePublishedIdentifiersAndTheDeclarationsOfTheVtables)
{
    std::map<std::string, std::vector<std::string>> slots;
    forEachRow(KEL_TESTS "vtables.txt", [&](Row words) {
        std::string object, kind, symbol;
        std::size_t slot = 0;
        words >> object >> slot >> kind >> symbol;
        if (slot >= kelcom::kDispatchSlots)
            slots[object].push_back(declarationOf(symbol));
    });
    std::string expected, ofNode;
    forEachRow(KEL_TESTS "type_library.txt", [&](Row words) {
        std::string object, attributes, functions, id;
        std::getline(words >> object >> std::ws, attributes, ':');
        auto declaration = slots.at(object).begin();
        while (words >> id)
            if (id == "+") {
                functions = ofNode;
                declaration += std::count(ofNode.begin(), ofNode.end(), '\n');
            } else {
                functions += id + ' ' + *declaration++ + '\n';
            }
        ofNode = object == "text" ? functions : ofNode;
        expected += attributes + '\n' + functions;
    });
    ITypeLib* library = nullptr;
    ASSERT_EQ(S_OK, KelTypelib::LoadTypeLib(L"" KEL_TYPE_LIBRARY, &library));
    const ULONG before = library->AddRef();
    const std::wstring described = describe(*library);
    EXPECT_EQ(expected + "d63e0ce2 MSXML 1.0\n", std::string(described.begin(), described.end()));
    TLIBATTR* attributes = nullptr;
    EXPECT_EQ(S_OK, library->GetLibAttr(&attributes));
    EXPECT_EQ(LIBID_MSXML, attributes->guid);
    kel::ComPtr<ITypeInfo> unknown;
    EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND, library->GetTypeInfoOfGuid(kUnknownGuid, unknown.put()));
    kel::ComPtr<IUnknown> same;
    EXPECT_EQ(S_OK, library->QueryInterface(IID_ITypeLib, reinterpret_cast<void**>(same.put())));
    same.reset();
    EXPECT_EQ(before - 1, library->Release());
}

TEST(TypeInfo, MapsNamesInAnyCaseAndFailsForUnknownOnesAndNullOutputs)
{
    const auto info = typeInfo(L"" KEL_TYPE_LIBRARY, IID_IXMLDOMDocument);
    const wchar_t* const known = L"CREATEnode";
    const std::wstring endless(100000, L'x');
    const kel::Bstr noParameter(L"none"), lastParameter(L"NAMESPACEuri");
    using Identifiers = std::array<MEMBERID, 3>;
    for (const wchar_t* const text :
         {known, L"", L"loadXM", L"lo\u00E4d", endless.c_str(), static_cast<const wchar_t*>(nullptr)}) {
        const kel::Bstr member(text);
        SCOPED_TRACE("a name of " + std::to_string(SysStringLen(member.get())) + " characters");
        wchar_t* names[] = {member.get(), noParameter.get(), lastParameter.get()};
        Identifiers identifiers{777, 777, 777};
        EXPECT_EQ(DISP_E_UNKNOWNNAME, info->GetIDsOfNames(names, 3, identifiers.data()));
        EXPECT_EQ(text == known ? (Identifiers{54, -1, 2}) : (Identifiers{-1, -1, -1}), identifiers);
    }

    kel::Bstr name;
    UINT count = 99;
    EXPECT_EQ(TYPE_E_ELEMENTNOTFOUND, info->GetNames(9999, name.put(), 1, &count));
    EXPECT_EQ(0U, count);
    EXPECT_EQ(std::to_wstring(TYPE_E_ELEMENTNOTFOUND), nameOf(*info, 9999));
    VARIANT value{};
    DISPPARAMS noValues{nullptr, nullptr, 1, 0}, noNames{&value, nullptr, 1, 1}, good{&value, nullptr, 1, 0};
    const auto call = [&](void* object, DISPPARAMS* parameters) {
        return info->Invoke(object, 63, DISPATCH_METHOD, parameters, nullptr, nullptr, nullptr);
    };
    MEMBERID id = 777;
    wchar_t* noName[] = {nullptr};
    ITypeLib* library = nullptr;
    int number = 0;
    for (const HRESULT code :
         {KelTypelib::RegisterTypeLib(kUnknownGuid, nullptr), info->GetIDsOfNames(noName, 0, &id),
          call(nullptr, &good), call(&value, nullptr), call(&value, &noValues), call(&value, &noNames)})
        EXPECT_EQ(E_INVALIDARG, code) << "call " << ++number;
    for (const HRESULT code :
         {info->GetIDsOfNames(nullptr, 1, &id), info->GetIDsOfNames(noName, 1, nullptr),
          info->GetNames(54, nullptr, 1, &count), info->GetNames(54, name.put(), 1, nullptr),
          info->GetTypeAttr(nullptr), info->GetFuncDesc(0, nullptr),
          info->GetContainingTypeLib(nullptr, nullptr), info->QueryInterface(IID_IUnknown, nullptr),
          KelTypelib::LoadTypeLib(nullptr, &library), KelTypelib::LoadTypeLib(L"x", nullptr),
          KelTypelib::GetTlbFilePath(kUnknownGuid, nullptr)})
        EXPECT_EQ(E_POINTER, code) << "call " << ++number;
}

} // namespace

/// Replaces the C library's `fstat`, which `LoadTypeLib` calls before it reads a file.
extern "C" KEL_EXPORT int fstat(int file, struct stat* status)
{
    if (const auto work = std::exchange(whileReading, nullptr))
        work();
    return ::fstatat(file, "", status, AT_EMPTY_PATH);
}
