// The filer: every status, with and without an open file, and the bytes, which must equal those that Qt's
// writer makes of the same calls.

#include "KelXmlLib/filer_wrapper.h"
#include "support/dom_fixture.h"
#include "support/filer_calls.h"
#include "support/seeds.h"

#include <csignal>
#include <sys/resource.h>

using namespace filer_calls;
using vtable_calls::call;

namespace
{

/// Two missing texts, and one that needs escapes.
const Text kTexts[] = {nullptr, L"", L"<\"\u00e4]]>"};
QStringList messages; ///< warnings from Qt

struct FilerTest : DomTest
{
    FilerTest()
    {
        messages.clear();
        qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& message) { messages += message; });
    }

    const std::wstring m_path = pathOf("\u00fc \u65e5 \U0001F600.xml").toStdWString();
};

} // namespace

TEST_F(FilerTest, OperationsWithoutAnOpenFileReturnTheSameStatusWriteNothingAndQtWarns)
{
    const std::wstring missing = pathOf("missing/written.xml").toStdWString(),
                       directory = pathOf("").toStdWString(), other = pathOf("other").toStdWString();
    const std::wstring odd = other + L"\xdc00"; // for Qt, this is the path `other`
    write(pathOf("other"), "other");
    for (const Text path :
         {Text(nullptr), L"", missing.c_str(), directory.c_str(), odd.c_str(), m_path.c_str()}) {
        KelXmlFilerWrapper filer(path, KelXmlLib::eEncodingUtf16, 7, true, true, L"one", nullptr);
        const bool isClosed = path == m_path.c_str();
        if (isClosed) {
            filer.writeElmBegin(L"r");
            filer.close();
        }
        EXPECT_EQ(messages, QStringList());
        for (const Call& made : kCalls)
            for (const Text one : kTexts)
                for (const Text two : kTexts)
                    EXPECT_EQ(made.answer(filer, one, two), made.expected(one, two)) << made.name;
        EXPECT_EQ(call(&filer, 26, "binary", 0, 1), 0);
        EXPECT_EQ(call(&filer, 26, "", -1, 1), 2) << "a negative length";
        EXPECT_EQ(call(&filer, 26, "", 0, 0), 2);
        EXPECT_EQ(call(&filer, 26, nullptr, 0, 1), 2);
        wchar_t buffer[] = L"kept";
        call(&filer, 5, buffer, 4);
        call(&filer, 5, nullptr, 4);
        EXPECT_STREQ(buffer, L"kept");
        EXPECT_EQ(call(&filer, 28), 0) << "the result of flush";
        EXPECT_EQ(call(&filer, 27), 0) << "the result of close";
        EXPECT_EQ(call(&filer, 2), 6) << "the state";
        EXPECT_EQ(call(&filer, 3), 2) << "the encoding";
        EXPECT_EQ(call(&filer, 4), path && *path) << "the flag; a filer without a path does not keep it";
        EXPECT_EQ(messages.removeAll(QStringLiteral("QXmlStreamWriter: No device")) > 0, !isClosed);
        EXPECT_EQ(messages.size(), isClosed ? 1 : 0) << "warnings that the device is not open";
        messages.clear();
    }
    EXPECT_EQ(contentOf(pathOf("other")), "other");
    EXPECT_EQ(contentOf(QString::fromStdWString(m_path)), "\n<r");
    for (const Text path : {Text(nullptr), L""})
        EXPECT_FALSE(morvCreateXmlFiler(path, KelXmlLib::eEncodingUtf8, 0, true, true, nullptr, nullptr));
    EXPECT_FALSE(QFile::exists(pathOf("missing")));
}

TEST_F(FilerTest, AnyOrderOfCallsWritesWhatQtWrites)
{
    forEachSeed(0, 300, [this](unsigned seed) {
        Writers(m_path, randomChoice(seed)).compare();
        EXPECT_EQ(messages, QStringList());
    });
}

TEST_F(FilerTest, AFullDiskIsNotReportedAndTheFileKeepsWhatFits)
{
    const std::wstring text(50000, L'x');
    rlimit usual{};
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &usual));
    const rlimit small{5000, usual.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &small));
    for (const Text path : {L"/dev/full", m_path.c_str()}) {
        KelXmlFilerWrapper filer(path, KelXmlLib::eEncodingUtf8, 0, false, false, nullptr, nullptr);
        for (const int status : {filer.writeElmBegin(L"r"), filer.writeText(text.c_str()), filer.flush(),
                                 filer.writeElmEnd(), filer.close(), filer.writeDocEnd()})
            EXPECT_EQ(0, status) << QString::fromWCharArray(path).toStdString();
    }
    EXPECT_EQ(0, setrlimit(RLIMIT_FSIZE, &usual));
    EXPECT_EQ("<r>" + QByteArray(4997, 'x'), contentOf(QString::fromStdWString(m_path)));
}
