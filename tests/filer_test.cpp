// The filer: what every operation answers and writes, in every phase of the file, and that what reaches the
// disk is what Qt's writer makes of the same calls.

#include "support/dom_fixture.h"
#include "support/filer_calls.h"

using namespace filer_calls;

namespace
{

/// What a text can lack, and one that has to be escaped.
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
        const auto makeAll = [&filer](const auto& calls) {
            for (const Call& call : calls)
                for (const Text one : kTexts)
                    for (const Text two : kTexts)
                        EXPECT_EQ(call.answer(filer, one, two), call.expected(one, two)) << call.slot;
        };
        makeAll(kCalls);
        makeAll(kNoOps);
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

TEST_F(FilerTest, AnyOrderOfCallsWritesWhatQtWritesAndAnotherParserReadsAnElementBack)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        Writers writers(m_path, randomChoice(seed));
        ASSERT_NO_THROW(writers.compare()) << "seed " << seed;
    }
    EXPECT_EQ(messages, QStringList());
}
