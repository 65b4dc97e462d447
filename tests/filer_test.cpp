// The filer: the status of every operation with and without an open file, and the bytes, compared with what
// Qt's writer makes of the same calls.

#include "KelXmlLib/filer_wrapper.h"
#include "support/dom_fixture.h"
#include "support/filer_calls.h"

#include <csignal>
#include <sys/resource.h>

using namespace filer_calls;

namespace
{

/// Two ways for a text to be missing, and one that needs escapes.
const Text kTexts[] = {nullptr, L"", L"<\"\u00e4]]>"};
QStringList messages;

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

TEST_F(FilerTest, OperationWithoutAnOpenFileAnswersTheSameWritesNothingAndQtWarns)
{
    const std::wstring missing = pathOf("missing/written.xml").toStdWString(),
                       directory = pathOf("").toStdWString(), other = pathOf("other").toStdWString();
    const std::wstring odd = other + L"\xdc00"; // which Qt takes for the other one
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
        for (const Call& call : kCalls)
            for (const Text one : kTexts)
                for (const Text two : kTexts)
                    EXPECT_EQ(call.answer(filer, one, two), call.expected(one, two)) << call.name;
        const auto slot = [&filer](int number, auto... arguments) {
            return own_host::call(&filer, number, arguments...);
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
        EXPECT_EQ(slot(4), path && *path) << "no flag is recorded without a path";
        EXPECT_EQ(messages.removeAll(QStringLiteral("QXmlStreamWriter: No device")) > 0, !isClosed);
        EXPECT_EQ(messages.size(), isClosed ? 1 : 0) << "once that the device is not open";
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
    for (unsigned seed = 0; seed < 300; ++seed) {
        Writers writers(m_path, randomChoice(seed));
        ASSERT_NO_THROW(writers.compare()) << "seed " << seed;
    }
    EXPECT_EQ(messages, QStringList());
}

TEST_F(FilerTest, AFullDiskIsNotReportedAndTheFileKeepsWhatFitted)
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
