// The filer: what every operation answers and writes, in every phase of the file, and that what reaches the
// disk is what Qt's writer makes of the same calls.

#include "support/filer_calls.h"
#include "support/own_host.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <gtest/gtest.h>
#include <random>

using namespace filer_calls;
using Filer = std::unique_ptr<IKelXmlFiler>;

namespace
{

/// What a text can lack, and one that has to be escaped.
const wchar_t* const kTexts[] = {nullptr, L"", L"<\"\u00e4]]>"};

class FilerTest : public testing::Test
{
protected:
    /// Qt says nothing on the console: the filer keeps it from that.
    static void SetUpTestSuite()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& message) {
            ADD_FAILURE() << message.toStdString();
        });
    }
    static Filer makeFiler(const QString& path, bool autoFormat = false)
    {
        return Filer(morvCreateXmlFiler(path.toStdWString().c_str(), KelXmlLib::eEncodingUtf16, 7, autoFormat,
                                        true, L"one", nullptr));
    }
    static QByteArray contentOf(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }

    QTemporaryDir m_directory;
    const QString m_path = m_directory.filePath(QStringLiteral("written.xml"));
    const std::wstring m_widePath = m_path.toStdWString();
};

} // namespace

TEST_F(FilerTest, OperationOnAnOpenFileAnswersAndWritesWhatItSays)
{
    for (const Call& call : kCalls)
        for (const wchar_t* const one : kTexts)
            for (const wchar_t* const two : kTexts) {
                Writers writers(m_widePath.c_str(), true, false);
                writers.make(kStartElement, L"r", nullptr);
                EXPECT_TRUE(writers.make(call, one, two)) << "operation " << &call - kCalls;
                EXPECT_TRUE(writers.flush());
                EXPECT_EQ(contentOf(m_path), writers.expected()) << "operation " << &call - kCalls;
            }
}

TEST_F(FilerTest, OperationWithoutAnOpenFileAnswersTheSameAndNothingIsWrittenOrPrinted)
{
    const QString nowhere = m_directory.filePath(QStringLiteral("missing/written.xml"));
    const auto unopened = [](const wchar_t* path) {
        return std::make_unique<KelXmlFilerWrapper>(path, KelXmlLib::eEncodingDefault, 0, true, true, nullptr,
                                                    nullptr);
    };
    const Filer filers[] = {unopened(nullptr), unopened(L""), makeFiler(nowhere),
                            makeFiler(m_directory.path()), makeFiler(m_path)};
    filers[4]->writeElmBegin(L"r");
    filers[4]->close();
    for (const Filer& filer : filers) {
        for (const Call& call : kCalls)
            for (const wchar_t* const one : kTexts)
                for (const wchar_t* const two : kTexts)
                    EXPECT_EQ(call.ours(*filer, one, two), call.expected(one, two)) << &call - kCalls;
        wchar_t buffer[] = L"kept";
        filer->newlineChars(buffer, 4);
        filer->newlineChars(nullptr, 4);
        EXPECT_STREQ(buffer, L"kept");
        EXPECT_EQ(filer->flush(), 0);
        EXPECT_EQ(filer->close(), 0);
        EXPECT_EQ(filer->state(), 6);
        EXPECT_EQ(filer->encoding(), 2);
        EXPECT_EQ(filer->indent(), 0) << "no flag is recorded without a path";
    }
    EXPECT_EQ(contentOf(m_path), "<r");
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(nowhere).path()));
}

TEST_F(FilerTest, FileIsEmptiedAtOnceAndKeepsWhatWasWrittenUntilItsFilerWent)
{
    const QString path = m_directory.filePath(QString::fromUtf8("\u00fc \u65e5 \U0001F600.xml"));
    for (const bool closes : {true, false}) {
        Filer filer = makeFiler(path);
        EXPECT_EQ(filer->indent(), 0);
        EXPECT_EQ(contentOf(path), "") << "what an earlier filer wrote is gone";
        filer->writeElmBegin(L"r");
        filer->writeText(std::wstring(100'000, L'x').c_str());
        if (closes) {
            EXPECT_EQ(filer->close(), 0);
            EXPECT_EQ(filer->close(), 0);
            filer->writeDocEnd();
        }
        filer.reset();
        EXPECT_EQ(contentOf(path), "<r>" + QByteArray(100'000, 'x')) << "open elements stay unended";
    }
    for (const wchar_t* const missing : {static_cast<const wchar_t*>(nullptr), L""})
        EXPECT_FALSE(morvCreateXmlFiler(missing, KelXmlLib::eEncodingUtf8, 0, true, true, nullptr, nullptr));
}

TEST_F(FilerTest, AnyOrderOfCallsWritesByteForByteWhatQtWrites)
{
    for (unsigned seed = 0; seed < 600; ++seed) {
        std::mt19937 random(seed);
        const Choose choose = [&](std::size_t limit) { return static_cast<unsigned>(random() % limit); };
        Writers writers(m_widePath.c_str(), true, seed % 2 != 0);
        for (int call = 0; call < 40; ++call)
            ASSERT_TRUE(writers.make(kCalls[choose(std::size(kCalls))], choose)) << "seed " << seed;
        writers.close();
        ASSERT_EQ(contentOf(m_path), writers.expected()) << "seed " << seed;
    }
}

TEST_F(FilerTest, DispatchTableHoldsTheOperationsInTheirOrder)
{
    using own_host::call;
    const wchar_t* const none = nullptr;
    wchar_t buffer[] = L"kept";
    const Filer owner = makeFiler(m_path, true);
    IKelXmlFiler* const filer = owner.get();
    EXPECT_EQ(call(filer, 2), 6);
    EXPECT_EQ(call(filer, 3), 2);
    EXPECT_EQ(call(filer, 4), 1);
    call(filer, 5, &buffer[0], 4);
    EXPECT_STREQ(buffer, L"kept");
    for (const int accepted : {call(filer, 6),
                               call(filer, 8, L"r"),
                               call(filer, 13),
                               call(filer, 14, L"a", L"v"),
                               call(filer, 9, L"e", L"one"),
                               call(filer, 8, L"f"),
                               call(filer, 15, L"two"),
                               call(filer, 16, L"<"),
                               call(filer, 17, true),
                               call(filer, 18, 1),
                               call(filer, 19, 1L),
                               call(filer, 20, 1.F),
                               call(filer, 21, 1.),
                               call(filer, 24, L"three"),
                               call(filer, 25, L"four"),
                               call(filer, 10),
                               call(filer, 8, L"g"),
                               call(filer, 11),
                               call(filer, 7),
                               call(filer, 28)})
        EXPECT_EQ(accepted, 0);
    for (const int refused : {call(filer, 12, none), call(filer, 22, none), call(filer, 23, none, none, none),
                              call(filer, 26, &kByte, -1, 1)})
        EXPECT_EQ(refused, 2);
    const QByteArray written = contentOf(m_path);
    EXPECT_EQ(written, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r a=\"v\">\n    <e>one</e>\n"
                       "    <f>two&lt;<![CDATA[three]]><!--four-->\n    </f>\n    <g/>\n</r>\n");
    for (const int accepted : {call(filer, 27), call(filer, 8, L"late"), call(filer, 28)})
        EXPECT_EQ(accepted, 0);
    EXPECT_EQ(contentOf(m_path), written);
}
