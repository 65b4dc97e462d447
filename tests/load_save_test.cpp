// Loading and saving: every road in, every refusal, and what is on the disk afterwards.

#include "support/dom_fixture.h"

#include <QtCore/QDir>
#include <QtCore/QTextCodec>
#include <csignal>
#include <sys/stat.h>
#include <thread>

namespace
{

struct LoadSave : DomTest
{
    void expectQtsVerdictAndBytes(const QByteArray& bytes)
    {
        const QString path = pathOf("bytes.xml");
        write(path, bytes);
        QDomDocument theirs;
        auto ours = newDocument();
        loadBoth(path, theirs, *ours);
        ASSERT_EQ(savedByQt(theirs).toStdString(), saved(ours)) << bytes.toStdString();
    }
};

/// Every kind of node, and markup where it is none.
const char kAllKinds[] =
    "<?xml version='1.0'?><!DOCTYPE r PUBLIC 'p' 's' [<!ENTITY e 'v&#60;x/>'><!ENTITY % p \"<!ENTITY f "
    "'w'>\">"
    "%p;<!ELEMENT r ((a,b)|c)*><!ATTLIST r d CDATA '&f;'><!NOTATION n SYSTEM 's'>"
    "<!ENTITY u SYSTEM 'u' NDATA n>]><!-- <a> --><r a='1' b=\"&f;>\">t&e;&amp;&#x41;<![CDATA[<c>&]]><?p <d>?>"
    "<x:b xmlns:x='u'>\xC3\xA9\xF0\x9F\x98\x80</x:b></r><?z?><!--y-->";

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

TEST_F(LoadSave, WhatCannotBeParsedIsRefusedAndTheEarlierTreeStaysUnlessParsingBegan)
{
    const QString broken = pathOf("broken.xml");
    const QString good = pathOf("gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80.xml");
    write(broken, "<a><b></a>");
    write(good, "<good/>");
    auto document = documentOf(L"<kept/>");
    const int descriptors = openDescriptors();

    VARIANT_BOOL success = 7;
    const Bstr name(good.toStdWString().c_str());
    BSTR text = name.get();
    VARIANT byReference{};
    byReference.vt = VT_BSTR | VT_BYREF;
    byReference.pbstrVal = &text;
    for (const Variant& source : {Variant::adopt(byReference), Variant(static_cast<const wchar_t*>(nullptr)),
                                  Variant(), Variant(3), Variant(L""), Variant(L"missing")}) {
        success = 7;
        EXPECT_EQ(S_FALSE, document->load(source.get(), &success)) << source.type();
        EXPECT_EQ(VARIANT_FALSE, success);
    }
    EXPECT_EQ(S_FALSE, load(*document, pathOf(""), &success)); // a directory
    EXPECT_EQ(S_FALSE, document->loadXML(nullptr, &success));
    EXPECT_EQ(S_FALSE, document->loadXML(Bstr(L"").get(), &success));
    EXPECT_EQ("<kept/>\n", saved(document));

    EXPECT_EQ(S_FALSE, load(*document, broken, &success));
    EXPECT_EQ(VARIANT_FALSE, success);
    EXPECT_EQ(std::string::npos, saved(document).find("kept"));
    EXPECT_EQ(S_OK, load(*document, good, &success));
    EXPECT_EQ(VARIANT_TRUE, success);
    EXPECT_EQ(S_FALSE, document->loadXML(Bstr(L"<a").get(), &success));
    EXPECT_EQ(VARIANT_FALSE, success);
    EXPECT_EQ(S_OK, document->loadXML(Bstr(L"<a/>").get(), nullptr));
    EXPECT_EQ(descriptors, openDescriptors());
}

TEST_F(LoadSave, PathThatFileNamesCannotHoldIsRefusedAndNoOtherFileIsTaken)
{
    auto document = documentOf(L"<a/>");
    QTextCodec* const locales = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    for (const wchar_t* const name : {L"\xd83d.xml", L"a\xdc00", L"\x110061", L"\x4010000", L"\u0107.xml"}) {
        const std::wstring path = pathOf("x").toStdWString() + name;
        const QString other = QFile::decodeName(QFile::encodeName(QString::fromStdWString(path)));
        write(other, "<other/>");
        EXPECT_EQ(S_FALSE, document->load(Variant(path).get(), nullptr)) << other.toStdString();
        EXPECT_EQ(S_FALSE, document->save(Variant(path).get())) << other.toStdString();
        EXPECT_EQ("<other/>", contentOf(other));
    }
    QTextCodec::setCodecForLocale(locales);
    EXPECT_EQ("<a/>\n", saved(document));
}

TEST_F(LoadSave, TextEndsAtItsFirstZeroWhateverTheLengthPrefixSays)
{
    auto document = newDocument();
    const Variant text(std::wstring(L"<a/>\0<b", 7));
    EXPECT_EQ(S_OK, document->loadXML(text.get().bstrVal, nullptr));
    EXPECT_EQ("<a/>\n", saved(document));
}

TEST_F(LoadSave, BytesCutOffAnywhereOrUnderAWrongLabelGetQtsVerdictAndBytes)
{
    const QByteArray all(kAllKinds);
    for (int length = 0; length <= all.size(); ++length)
        expectQtsVerdictAndBytes(all.left(length));

    const QByteArray bodies[] = {"<a>\xC3\xA9\xF0\x9F\x98\x80</a>", "<a>\xE9\xFF</a>", "<a>\xED\xA0\x80</a>",
                                 QByteArray("<a>\0b</a>", 9), "<a\0"};
    QList<QByteArray> heads{"",
                            "\xEF\xBB\xBF",
                            "\xFE\xFF",
                            "\xFF\xFE",
                            QByteArray("\xFF\xFE\0\0", 4),
                            QByteArray("\0\0\xFE\xFF", 4)};
    // Not UTF-32: Qt ends it with what its memory holds when it encodes pairs of surrogates.
    for (const char* const label :
         {"UTF-8", "UTF-16", "ISO-8859-1", "windows-1251", "Shift_JIS", "no-such", "", "UTF-7", "\xFF"})
        heads += QByteArray("<?xml version='1.0' encoding='") + label + "'?>";
    for (const QByteArray& body : bodies) {
        for (const QByteArray& head : heads)
            expectQtsVerdictAndBytes(head + body);
        for (const char* const codec : {"UTF-16LE", "UTF-16BE"})
            for (const QByteArray& head : heads)
                expectQtsVerdictAndBytes(
                    QTextCodec::codecForName(codec)->fromUnicode(QString::fromUtf8(head + body)));
    }
    // A surrogate on its own.
    expectQtsVerdictAndBytes(QByteArray("\xFF\xFE<\0a\0>\0\0\xD8<\0/\0a\0>\0", 18));
}

TEST_F(LoadSave, APipeLoadsLikeAFileAndADeviceIsRefusedOrReadAsFarAsItIsWellFormed)
{
    const QString path = pathOf("pipe");
    ASSERT_EQ(0, mkfifo(path.toUtf8(), 0600));
    // Longer than a pipe holds, so that the writer waits for the reader.
    const QByteArray longText = "<a>" + QByteArray(300'000, 'x') + "</a>";
    for (const QByteArray& bytes : {longText, longText.chopped(1), QByteArray()}) {
        std::thread writer([&] { write(path, bytes); });
        auto document = newDocument();
        VARIANT_BOOL success = 7;
        EXPECT_EQ(bytes == longText ? S_OK : S_FALSE, load(*document, path, &success));
        writer.join();
    }
    auto document = documentOf(L"<kept/>");
    std::signal(SIGPIPE, SIG_IGN);
    qint64 taken = 0;
    std::thread writer([&] {
        QFile pipe(path);
        ASSERT_TRUE(pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        qint64 more = pipe.write("<r/>");
        for (const QByteArray blanks(64 * 1024, ' '); more > 0; more = pipe.write(blanks))
            taken += more;
    });
    EXPECT_EQ(S_FALSE, load(*document, path, nullptr)) << "a pipe without end";
    writer.join();
    EXPECT_NEAR(64.1 * 1024 * 1024, static_cast<double>(taken), 0.2 * 1024 * 1024);
    QFile large(pathOf("large"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(512 * 1024 * 1024 + 1));
    EXPECT_EQ(S_FALSE, load(*document, large.fileName(), nullptr));
    EXPECT_EQ("<kept/>\n", saved(document));
    for (const char* const device : {"/dev/zero", "/dev/urandom", "/dev/null", "/proc/self/mem", "/"})
        EXPECT_EQ(S_FALSE, load(*document, QString::fromUtf8(device), nullptr)) << device;
}

TEST_F(LoadSave, SaveKeepsTheDeclaredEncodingAndAddsNoDeclarationOfItsOwn)
{
    EXPECT_EQ("<a>\n    <b>\n        <c/>\n    </b>\n</a>\n<!--after-->\n",
              saved(documentOf(L"<a><b><c/></b></a><!--after-->")));
    EXPECT_EQ("<?xml version='1.0' encoding='ISO-8859-1'?>\n<a>\xE9</a>\n",
              saved(documentOf(L"<?xml version='1.0' encoding='ISO-8859-1'?><a>\u00e9</a>")));
    EXPECT_EQ("<a>\xC3\xA9\xF0\x9F\x98\x80</a>\n", saved(documentOf(L"<a>\u00e9\U0001F600</a>")));
    EXPECT_EQ("", saved(newDocument()));
}

TEST_F(LoadSave, SaveRefusesWhatItCannotOpenAndReplacesWhatIsThere)
{
    auto document = documentOf(L"<a/>");
    const QString path = pathOf("there.xml");
    write(path, QByteArray(5000, 'x'));
    EXPECT_EQ(S_OK, save(*document, path));
    EXPECT_EQ("<a/>\n", contentOf(path));

    const std::wstring missing = pathOf("no/such/directory.xml").toStdWString();
    for (const Variant& destination : {Variant(missing), Variant(L""), Variant(3), Variant()})
        EXPECT_EQ(S_FALSE, document->save(destination.get()));
    EXPECT_EQ(S_OK, save(*document, QStringLiteral("/dev/full"))) << "a full disk is not reported";
}

} // namespace
