// The filer: the status that each call returns, with and without an open file, and the bytes that the filer
// writes. Qt's writer must write the same bytes for the same calls.

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

/// A null text, an empty text, and a text that needs escapes.
const Text kTexts[] = {nullptr, L"", L"<\"\u00e4]]>"};
QStringList messages; ///< the warnings that Qt logged

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

TEST_F(FilerTest, WithoutAnOpenFileCallsReturnTheUsualStatusAndWriteNothing)
{
    const std::wstring missing = pathOf("missing/written.xml").toStdWString(),
                       directory = pathOf("").toStdWString(), other = pathOf("other").toStdWString();
    const std::wstring odd = other + L"\xdc00"; // for Qt, this is the path `other`
    write(pathOf("other"), "other");
    for (const Text path :
         {Text(nullptr), L"", missing.c_str(), directory.c_str(), odd.c_str(), m_path.c_str()}) {
        KelXmlFilerWrapper filer(path, KelXmlLib::eEncodingUtf16, 7, true, true, L"one", nullptr);
        const bool isClosed = path == m_path.c_str();
        SCOPED_TRACE(path);
        if (isClosed) {
            filer.writeElmBegin(L"r");
            filer.close();
        }
        EXPECT_EQ(messages, QStringList());
        for (const Call& made : kCalls)
            for (const Text one : kTexts)
                for (const Text two : kTexts)
                    EXPECT_EQ(made.status(filer, one, two), made.expected(one, two))
                        << made.name << " of '" << one << "' and '" << two << "'";
        EXPECT_EQ(call(&filer, 26, "binary", 0, 1), 0);
        EXPECT_EQ(call(&filer, 26, "", -1, 1), 2) << "a negative first argument must be refused";
        EXPECT_EQ(call(&filer, 26, "", 0, 0), 2);
        EXPECT_EQ(call(&filer, 26, nullptr, 0, 1), 2);
        wchar_t buffer[] = L"kept";
        call(&filer, 5, buffer, 4);
        call(&filer, 5, nullptr, 4);
        EXPECT_STREQ(buffer, L"kept");
        EXPECT_EQ(call(&filer, 28), 0) << "flush must return 0";
        EXPECT_EQ(call(&filer, 27), 0) << "close must return 0";
        EXPECT_EQ(call(&filer, 2), 6) << "the state must be 6";
        EXPECT_EQ(call(&filer, 3), 2) << "the encoding must always be UTF-8";
        EXPECT_EQ(call(&filer, 4), path && *path) << "indent must return autoFormat, or 0 without a path";
        EXPECT_EQ(messages.removeAll(QStringLiteral("QXmlStreamWriter: No device")) > 0, !isClosed);
        EXPECT_EQ(messages.size(), isClosed ? 1 : 0) << "only a closed filer may cause another warning";
        messages.clear();
    }
    EXPECT_EQ(contentOf(pathOf("other")).toStdString(), "other");
    EXPECT_EQ(contentOf(QString::fromStdWString(m_path)).toStdString(), "\n<r");
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
        EXPECT_EQ(std::vector<int>(6, 0),
                  (std::vector<int>{filer.writeElmBegin(L"r"), filer.writeText(text.c_str()), filer.flush(),
                                    filer.writeElmEnd(), filer.close(), filer.writeDocEnd()}))
            << path;
    }
    EXPECT_EQ(0, setrlimit(RLIMIT_FSIZE, &usual));
    EXPECT_EQ("<r>" + QByteArray(4997, 'x'), contentOf(QString::fromStdWString(m_path)));
}
