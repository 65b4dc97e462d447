// Loading type libraries: the cache, files that are no libraries, libraries that contradict themselves.

#include "support/type_library_walk.h"

#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <vector>

using keltest::stamped;
using keltest::TypeLibraryFile;

namespace
{

std::size_t walk(ITypeLib& library)
{
    return keltest::walkLibrary(library, [](bool holds) { EXPECT_TRUE(holds); });
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

} // namespace

TEST(TypeLibraryCache, ReadsAFileOnceAndAnewWhenItIsRegisteredAgain)
{
    TypeLibraryFile file(stamped(kSmallBody));
    ITypeLib* first = nullptr;
    ITypeLib* again = nullptr;
    ASSERT_EQ(file.load(&first), S_OK);
    file.registerAgain();
    ASSERT_EQ(file.load(&again), S_OK);
    EXPECT_EQ(again, first) << "the same contents";
    QFile::remove(file.path());
    again = nullptr;
    ASSERT_EQ(file.load(&again), S_OK) << "the system is not asked";
    EXPECT_EQ(again, first);

    kel::ComPtr<ITypeInfo> info;
    ASSERT_EQ(first->GetTypeInfo(0, info.put()), S_OK);
    file.write("damaged");
    file.registerAgain();
    EXPECT_EQ(file.load(&again), TYPE_E_INVDATAREAD);
    QFile::remove(file.path());
    EXPECT_EQ(file.load(&again), TYPE_E_CANTLOADLIBRARY) << "tried again without another registration";
    EXPECT_EQ(again, first) << "written on success only";
    file.write(stamped(QByteArray(kSmallBody).replace("'find'", "'look'")));
    ITypeLib* changed = nullptr;
    ASSERT_EQ(file.load(&changed), S_OK);
    EXPECT_NE(changed, first);
    EXPECT_EQ(walk(*first), 7U) << "a borrowed library stays usable";
    EXPECT_EQ(keltest::idOf(*info, L"find"), 2);
    ASSERT_EQ(changed->GetTypeInfo(0, info.put()), S_OK);
    EXPECT_EQ(keltest::idOf(*info, L"look"), 2);
}

TEST(TypeLibraryFiles, WhatIsNoReadableRegularFileOfSensibleSizeIsRefused)
{
    const QTemporaryDir directory;
    const QString pipe = directory.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QString enormous = directory.filePath(QStringLiteral("enormous"));
    QFile sparse(enormous);
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64{1} << 40));
    const QString empty = directory.filePath(QStringLiteral("empty"));
    ASSERT_TRUE(QFile(empty).open(QIODevice::WriteOnly));
    const std::pair<QString, HRESULT> cases[] = {
        {directory.filePath(QStringLiteral("missing")), TYPE_E_CANTLOADLIBRARY},
        {directory.path(), TYPE_E_CANTLOADLIBRARY},
        {QStringLiteral("/dev/zero"), TYPE_E_CANTLOADLIBRARY},
        {pipe, TYPE_E_CANTLOADLIBRARY},
        {QString(), TYPE_E_CANTLOADLIBRARY},
        {QString(5000, QLatin1Char('x')), TYPE_E_CANTLOADLIBRARY},
        {empty, TYPE_E_INVDATAREAD},
        {enormous, TYPE_E_INVDATAREAD},
    };
    for (const auto& [path, expected] : cases) {
        ITypeLib* library = nullptr;
        EXPECT_EQ(KelTypelib::LoadTypeLib(path.toStdWString().c_str(), &library), expected)
            << path.toStdString();
        EXPECT_EQ(library, nullptr);
    }
    ITypeLib* library = nullptr;
    EXPECT_EQ(KelTypelib::LoadTypeLib(nullptr, &library), E_POINTER);
    EXPECT_EQ(KelTypelib::LoadTypeLib(L"x", nullptr), E_POINTER);
    EXPECT_EQ(KelTypelib::LoadTypeLib(L"" KEL_TYPE_LIBRARY, &library), S_OK) << "none the worse for it";
}

TEST(TypeLibraryFiles, CutShortOrChangedInOneByteIsRefused)
{
    TypeLibraryFile file;
    QFile original(QStringLiteral(KEL_TYPE_LIBRARY));
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    const QByteArray whole = original.readAll();
    for (int length = 0; length < whole.size(); length += length < 300 ? 1 : 37) {
        file.write(whole.left(length));
        ASSERT_EQ(file.load(), TYPE_E_INVDATAREAD) << length;
    }
    std::mt19937 random(20);
    for (int round = 0; round < 2000; ++round) {
        QByteArray changed = whole;
        // The head is not under the digest, so each of them has its turn.
        const int place =
            round < 200 ? round : static_cast<int>(random() % static_cast<unsigned>(whole.size()));
        changed[place] = static_cast<char>(changed[place] ^ static_cast<char>(1 + random() % 255));
        file.write(changed);
        ASSERT_EQ(file.load(), TYPE_E_INVDATAREAD) << place;
    }
    file.write(whole);
    EXPECT_EQ(file.load(), S_OK);
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
        EXPECT_EQ(file.load(), expected) << from.toStdString() << " -> " << to.left(100).toStdString();
    };
    QFile changes(QStringLiteral(KEL_TYPE_LIBRARY_CHANGES));
    ASSERT_TRUE(changes.open(QIODevice::ReadOnly));
    QByteArray from;
    for (const QByteArray& line : changes.readAll().split('\n')) {
        if (line.startsWith('='))
            from = line.mid(2);
        else if (!line.isEmpty())
            expectLoad(line.startsWith('+') ? S_OK : TYPE_E_INVDATAREAD, from, line.mid(2));
    }

    const auto repeated = [](int first, int end, const char* pattern) {
        QString all;
        for (int number = first; number < end; ++number)
            all += QString::fromLatin1(pattern).arg(number);
        return all.toLatin1();
    };
    const char member[] = "<member name='m%1' id='%1' kind='method'/>";
    const char parameter[] = "<param name='p%1' type='int' dir='in'/>";
    const QByteArray what = "<param name='what' type='BSTR' dir='in'/>";
    const QByteArray last = "</interface></library>";
    expectLoad(TYPE_E_INVDATAREAD, last, repeated(1000, 1509, member) + last);
    expectLoad(S_OK, last, repeated(1000, 1508, member) + last);
    expectLoad(TYPE_E_INVDATAREAD, what, repeated(0, 8, parameter));
    expectLoad(S_OK, what, repeated(0, 7, parameter));
    expectLoad(TYPE_E_INVDATAREAD, "here", repeated(0, 300, "--><enum name='E%1'/><!--"));
    expectLoad(TYPE_E_INVDATAREAD, "here", QByteArray(10000, '='));
    expectLoad(S_OK, "here", QByteArray(1000, '='));
    expectLoad(TYPE_E_INVDATAREAD, "'find'", '\'' + QByteArray(200, 'n') + '\'');
}
