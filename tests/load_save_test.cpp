// Loading and saving files: every result equals Qt's, and a refused call changes neither the tree nor a file.

#include "support/compare_with_qt.h"
#include "support/dom_fixture.h"

#include <QtCore/QDirIterator>
#include <QtCore/QTextCodec>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

/// The number of bytes that can be read before one read fails; negative if no read fails.
ssize_t readableBytes = -1;

} // namespace

/// Replaces the C library's function for all callers, including Qt.
extern "C" ssize_t read(int descriptor, void* to, std::size_t most)
{
    if (readableBytes == 0) {
        readableBytes = -1;
        errno = EIO;
        return -1;
    }
    const ssize_t count = syscall(SYS_read, descriptor, to,
                                  readableBytes > 0 ? std::min<std::size_t>(most, readableBytes) : most);
    if (readableBytes > 0)
        readableBytes -= count;
    return count;
}

namespace
{

struct LoadSave : DomTest
{
    /// Writes the bytes to a file, and loads and saves this file both with Qt and with the library.
    /// \return whether the file was loaded
    bool expectSameAsQt(const QByteArray& bytes)
    {
        SCOPED_TRACE(bytes.left(1000).toPercentEncoding().toStdString());
        const QString path = pathOf("bytes.xml");
        write(path, bytes);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const auto ours = newDocument();
        QDomDocument theirs;
        const auto loadOurs = [&path](auto& document, auto* flag) { return load(document, path, flag); };
        bool isLoaded = false;
        EXPECT_NO_THROW(isLoaded = loadAndCompareWithQt(theirs, *ours, loadOurs, &file);
                        model::compareNodes(itemsOf(*listOf(*ours)), model::fromQt(theirs)->children, true));
        return isLoaded;
    }
};

TEST_F(LoadSave, APathThatCannotBeEncodedIsRefusedAndNoOtherFileIsUsed)
{
    auto document = documentOf(L"<a/>");
    QTextCodec* const locales = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    std::vector<std::wstring> paths{L'\ufeff' + pathOf("x").toStdWString()};
    for (const wchar_t* const name : {L"\xd83d.xml", L"a\xdc00", L"\x110061", L"\x4010000", L"\u0107.xml"})
        paths.push_back(pathOf("x").toStdWString() + name);
    for (const std::wstring& path : paths) {
        const QString other = QFile::decodeName(QFile::encodeName(QString::fromStdWString(path)));
        write(other, "<other/>");
        EXPECT_EQ(S_FALSE, document->load(Variant(path).get(), nullptr)) << other.toStdString();
        EXPECT_EQ(S_FALSE, document->save(Variant(path).get())) << other.toStdString();
        EXPECT_EQ("<other/>", contentOf(other).toStdString());
    }
    QTextCodec::setCodecForLocale(locales);
    EXPECT_EQ("<a/>\n", saved(*document));
}

TEST_F(LoadSave, TruncatedAndMislabelledFilesLoadAndSaveAsWithQt)
{
    const QByteArray all = contentOf(QStringLiteral(KEL_TESTS "all_kinds.xml"));
    for (int length = 0; length <= all.size(); ++length)
        expectSameAsQt(all.left(length));

    const QByteArray bodies[] = {"<a>\xC3\xA9\xF0\x9F\x98\x80</a>", "<a>\xE9\xFF</a>", "<a>\xED\xA0\x80</a>",
                                 QByteArray("<a>\0b</a>", 9), "<a\0"};
    QList<QByteArray> heads{"", "\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE"};
    heads << QByteArray("\xFF\xFE\0\0", 4) << QByteArray("\0\0\xFE\xFF", 4);
    // No label names UTF-32, because Qt's encoder leaves uninitialised memory at the end of a text with
    // surrogate pairs.
    for (const char* const label :
         {"UTF-8", "UTF-16", "ISO-8859-1", "windows-1251", "Shift_JIS", "no-such", "", "UTF-7", "\xFF"})
        heads += QByteArray("<?xml version='1.0' encoding='") + label + "'?>";
    for (const QByteArray& body : bodies) {
        for (const QByteArray& head : heads) {
            const QByteArray bytes = head + body;
            expectSameAsQt(bytes);
            for (const char* const codec : {"UTF-16LE", "UTF-16BE"})
                expectSameAsQt(QTextCodec::codecForName(codec)->fromUnicode(QString::fromUtf8(bytes)));
        }
    }
    // A text with a lone surrogate.
    expectSameAsQt(QByteArray("\xFF\xFE<\0a\0>\0\0\xD8<\0/\0a\0>\0", 18));
}

TEST_F(LoadSave, AFailedReadAtAnyByteKeepsTheEarlierTree)
{
    const auto document = documentOf(L"<kept/>");
    const QString path = pathOf("file.xml");
    const QByteArray bytes = "<r/><!---->";
    write(path, bytes);
    for (int byte = 0; byte <= bytes.size(); ++byte) {
        VARIANT_BOOL success = 7;
        readableBytes = byte;
        EXPECT_EQ(S_FALSE, load(*document, path, &success)) << "byte " << byte;
        EXPECT_EQ(-1, readableBytes) << "a read must fail at byte " << byte;
        EXPECT_EQ(VARIANT_FALSE, success) << "byte " << byte;
        ASSERT_EQ("<kept/>\n", saved(*document)) << "byte " << byte;
    }
    EXPECT_EQ(S_OK, load(*document, path, nullptr));
}

TEST_F(LoadSave, EveryInstalledXmlFileLoadsAndSavesAsWithQt)
{
    int loaded = 0;
    QDirIterator files(QStringLiteral("/usr/share"), {QStringLiteral("*.xml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        SCOPED_TRACE(files.next().toStdString());
        loaded += expectSameAsQt(contentOf(files.filePath())) ? 1 : 0;
    }
    EXPECT_GE(loaded, 10) << "the files of shared-mime-info and xkb-data must load";
}

} // namespace
