// The filer: what every operation answers and writes, in every phase of the file, and that what reaches the
// disk is what Qt's writer makes of the same calls.

#include "support/filer_calls.h"

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
const Text kTexts[] = {nullptr, L"", L"<\"\u00e4]]>"};

struct FilerTest : testing::Test
{
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
        for (const Text one : kTexts)
            for (const Text two : kTexts) {
                Writers writers(m_widePath.c_str(), true, false);
                writers.make(kStartElement, L"r", nullptr);
                EXPECT_TRUE(writers.make(call, one, two)) << call.slot;
                EXPECT_TRUE(writers.flush());
                EXPECT_EQ(contentOf(m_path), writers.expected()) << call.slot;
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
            for (const Text one : kTexts)
                for (const Text two : kTexts)
                    EXPECT_EQ(call.answer(*filer, one, two), call.expected(one, two)) << call.slot;
        const auto slot = [&filer](int number, auto... arguments) {
            return own_host::call(filer.get(), number, arguments...);
        };
        EXPECT_EQ(slot(26, "binary", 0, 1), 0);
        for (const int refused : {slot(26, "", -1, 1), slot(26, "", 0, 0), slot(26, nullptr, 0, 1)})
            EXPECT_EQ(refused, 2);
        wchar_t buffer[] = L"kept";
        slot(5, buffer, 4);
        slot(5, nullptr, 4);
        EXPECT_STREQ(buffer, L"kept");
        EXPECT_EQ(slot(28), 0) << "flush";
        EXPECT_EQ(slot(27), 0) << "close";
        EXPECT_EQ(slot(2), 6) << "its state";
        EXPECT_EQ(slot(3), 2) << "its encoding";
        EXPECT_EQ(slot(4), 0) << "no flag is recorded without a path";
    }
    EXPECT_EQ(contentOf(m_path), "<r");
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(nowhere).path()));
}

TEST_F(FilerTest, FileIsEmptiedAtOnceAndKeepsWhatWasWrittenUntilItsFilerWent)
{
    const QString path = m_directory.filePath(QString::fromUtf8("\u00fc \u65e5 \U0001F600.xml"));
    for (const bool closes : {true, false}) {
        Filer filer = makeFiler(path);
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
    EXPECT_EQ(makeFiler(path, true)->indent(), 1);
    EXPECT_EQ(makeFiler(path)->indent(), 0);
    for (const Text missing : {Text(nullptr), L""})
        EXPECT_FALSE(morvCreateXmlFiler(missing, KelXmlLib::eEncodingUtf8, 0, true, true, nullptr, nullptr));
}

TEST_F(FilerTest, AnyOrderOfCallsWritesByteForByteWhatQtWrites)
{
    for (unsigned seed = 0; seed < 600; ++seed) {
        std::mt19937 random(seed);
        const Choose choose = [&](std::size_t limit) { return static_cast<unsigned>(random() % limit); };
        Writers writers(m_widePath.c_str(), true, seed % 2 != 0);
        ASSERT_TRUE(writers.flush()) << "which is no end";
        for (int call = 0; call < 40; ++call)
            ASSERT_TRUE(writers.make(kCalls[choose(std::size(kCalls))], choose)) << "seed " << seed;
        writers.close();
        ASSERT_EQ(contentOf(m_path), writers.expected()) << "seed " << seed;
    }
}
