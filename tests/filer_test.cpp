// The filer: what every operation answers and writes, in every phase of the file, and that what reaches the
// disk is what Qt's writer makes of the same calls.

#include "KelXmlLib/filer.h"
#include "support/allocations.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <random>
#include <string>

using Filer = std::unique_ptr<IKelXmlFiler>;

namespace
{

Filer makeFiler(const QString& path, bool autoFormat = false)
{
    return Filer(morvCreateXmlFiler(path.toStdWString().c_str(), KelXmlLib::eEncodingUtf16, 7, autoFormat,
                                    true, L"one", nullptr));
}

std::string contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll().toStdString();
}

/// Counts what Qt has to say while it lives; the filer is to keep it from saying anything.
class ConsoleWatch
{
public:
    ConsoleWatch()
    {
        s_messages = 0;
        m_previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString&) { ++s_messages; });
    }
    ConsoleWatch(const ConsoleWatch&) = delete;
    ConsoleWatch& operator=(const ConsoleWatch&) = delete;
    ~ConsoleWatch() { qInstallMessageHandler(m_previous); }
    int messages() const { return s_messages; }

private:
    static inline int s_messages = 0;
    QtMessageHandler m_previous;
};

struct Operation
{
    const char* what;
    std::function<int(IKelXmlFiler&)> call;
    int status;
    const char* after; ///< what the file holds when the call followed the start of an element `r`
};

const unsigned char kByte = 0;
const Operation kOperations[] = {
    {"declaration", [](auto& f) { return f.writeDocBegin(); }, 0,
     "<r><?xml version=\"1.0\" encoding=\"UTF-8\"?>"},
    {"end of document", [](auto& f) { return f.writeDocEnd(); }, 0, "<r/>\n"},
    {"element", [](auto& f) { return f.writeElmBegin(L"e"); }, 0, "<r><e"},
    {"element, null", [](auto& f) { return f.writeElmBegin(nullptr); }, 2, "<r"},
    {"element, empty", [](auto& f) { return f.writeElmBegin(L""); }, 2, "<r"},
    {"whole element", [](auto& f) { return f.writeElmBegin(L"e", L"x<y"); }, 0, "<r><e>x&lt;y</e>"},
    {"whole element, no name", [](auto& f) { return f.writeElmBegin(nullptr, L"x"); }, 2, "<r"},
    {"whole element, no text", [](auto& f) { return f.writeElmBegin(L"e", nullptr); }, 2, "<r"},
    {"whole element, empty text", [](auto& f) { return f.writeElmBegin(L"e", L""); }, 2, "<r"},
    {"end of element", [](auto& f) { return f.writeElmEnd(); }, 0, "<r/>"},
    {"full end of element", [](auto& f) { return f.writeElmFullEnd(); }, 0, "<r/>"},
    {"bracket", [](auto& f) { return f.writeAttrBegin(L"a"); }, 0, "<r"},
    {"bracket, empty", [](auto& f) { return f.writeAttrBegin(L""); }, 2, "<r"},
    {"bracket's end", [](auto& f) { return f.writeAttrEnd(); }, 0, "<r"},
    {"attribute", [](auto& f) { return f.writeAttribute(L"a", L"<\"\u00e4"); }, 0,
     "<r a=\"&lt;&quot;\u00e4\""},
    {"attribute, null value", [](auto& f) { return f.writeAttribute(L"a", nullptr); }, 0, "<r a=\"\""},
    {"attribute, empty value", [](auto& f) { return f.writeAttribute(L"a", L""); }, 0, "<r a=\"\""},
    {"attribute, no name", [](auto& f) { return f.writeAttribute(L"", L"v"); }, 2, "<r"},
    {"text", [](auto& f) { return f.writeText(L"<&>\""); }, 0, "<r>&lt;&amp;&gt;&quot;"},
    {"text, null", [](auto& f) { return f.writeText(nullptr); }, 2, "<r"},
    {"raw text", [](auto& f) { return f.writeRawText(L"<&>\""); }, 0, "<r>&lt;&amp;&gt;&quot;"},
    {"raw text, empty", [](auto& f) { return f.writeRawText(L""); }, 2, "<r"},
    {"boolean", [](auto& f) { return f.writeValue(true); }, 0, "<r"},
    {"integer", [](auto& f) { return f.writeValue(1); }, 0, "<r"},
    {"long", [](auto& f) { return f.writeValue(1L); }, 0, "<r"},
    {"float", [](auto& f) { return f.writeValue(1.F); }, 0, "<r"},
    {"double", [](auto& f) { return f.writeValue(1.); }, 0, "<r"},
    {"value", [](auto& f) { return f.writeValue(L"v"); }, 0, "<r"},
    {"value, empty", [](auto& f) { return f.writeValue(L""); }, 2, "<r"},
    {"type", [](auto& f) { return f.writeDocType(L"r", nullptr, L""); }, 0, "<r"},
    {"type, no name", [](auto& f) { return f.writeDocType(nullptr, L"p", L"s"); }, 2, "<r"},
    {"section", [](auto& f) { return f.writeCData(L"<a>]]>"); }, 0, "<r><![CDATA[<a>]]]]><![CDATA[>]]>"},
    {"section, empty", [](auto& f) { return f.writeCData(L""); }, 2, "<r"},
    {"comment", [](auto& f) { return f.writeComment(L" <c> "); }, 0, "<r><!-- <c> -->"},
    {"comment, null", [](auto& f) { return f.writeComment(nullptr); }, 2, "<r"},
    {"binary", [](auto& f) { return f.writeBinary(&kByte, 0, 1); }, 0, "<r"},
    {"binary, negative", [](auto& f) { return f.writeBinary(&kByte, -1, 1); }, 2, "<r"},
    {"binary, none", [](auto& f) { return f.writeBinary(&kByte, 0, 0); }, 2, "<r"},
    {"binary, null", [](auto& f) { return f.writeBinary(nullptr, 0, 1); }, 2, "<r"},
    {"flush", [](auto& f) { return f.flush(); }, 0, "<r"},
    {"close", [](auto& f) { return f.close(); }, 0, "<r"},
};

class FilerTest : public testing::Test
{
protected:
    QTemporaryDir m_directory;
    const QString m_path = m_directory.filePath(QStringLiteral("written.xml"));
};

} // namespace

TEST_F(FilerTest, OperationOnAnOpenFileAnswersAndWritesWhatItSays)
{
    for (const Operation& operation : kOperations) {
        const Filer filer = makeFiler(m_path);
        filer->writeElmBegin(L"r");
        EXPECT_EQ(operation.call(*filer), operation.status) << operation.what;
        EXPECT_EQ(filer->flush(), 0);
        EXPECT_EQ(contentOf(m_path), operation.after) << operation.what;
    }
}

TEST_F(FilerTest, OperationWithoutAnOpenFileAnswersTheSameAndNothingIsWrittenOrPrinted)
{
    const ConsoleWatch console;
    const QString nowhere = m_directory.filePath(QStringLiteral("missing/written.xml"));
    const Filer filers[] = {std::make_unique<KelXmlFilerWrapper>(nullptr, KelXmlLib::eEncodingDefault, 0,
                                                                 true, true, nullptr, nullptr),
                            std::make_unique<KelXmlFilerWrapper>(L"", KelXmlLib::eEncodingDefault, 0, true,
                                                                 true, nullptr, nullptr),
                            makeFiler(nowhere), makeFiler(m_directory.path()), makeFiler(m_path)};
    filers[4]->writeElmBegin(L"r");
    filers[4]->close();
    for (const Filer& filer : filers) {
        wchar_t buffer[] = L"kept";
        for (const Operation& operation : kOperations)
            EXPECT_EQ(operation.call(*filer), operation.status) << operation.what;
        filer->newlineChars(buffer, 4);
        filer->newlineChars(nullptr, 4);
        EXPECT_STREQ(buffer, L"kept");
        EXPECT_EQ(filer->state(), 6);
        EXPECT_EQ(filer->encoding(), 2);
        EXPECT_EQ(filer->indent(), 0) << "no flag is recorded without a path";
    }
    EXPECT_EQ(contentOf(m_path), "<r");
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(nowhere).path()));
    EXPECT_EQ(console.messages(), 0);
}

TEST_F(FilerTest, AutoFormattingPutsEachStartTagOnALineOfItsOwn)
{
    const auto write = [&](bool autoFormat) {
        const Filer filer = makeFiler(m_path, autoFormat);
        EXPECT_EQ(filer->indent(), autoFormat ? 1 : 0);
        filer->writeDocBegin();
        filer->writeElmBegin(L"root");
        filer->writeAttribute(L"a", nullptr);
        filer->writeElmBegin(L"child");
        filer->writeElmBegin(L"t", L"x<y");
        filer->writeDocEnd();
        filer->close();
        return contentOf(m_path);
    };
    EXPECT_EQ(write(true), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                           "<root a=\"\">\n"
                           "    <child>\n"
                           "        <t>x&lt;y</t>\n"
                           "    </child>\n"
                           "</root>\n");
    EXPECT_EQ(write(false),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><root a=\"\"><child><t>x&lt;y</t></child></root>\n");
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
        EXPECT_EQ(contentOf(path), "<r>" + std::string(100'000, 'x')) << "open elements stay unended";
    }
    EXPECT_EQ(morvCreateXmlFiler(nullptr, KelXmlLib::eEncodingUtf8, 0, true, true, nullptr, nullptr),
              nullptr);
    EXPECT_EQ(morvCreateXmlFiler(L"", KelXmlLib::eEncodingUtf8, 0, true, true, nullptr, nullptr), nullptr);
}

namespace
{

/// Text without a zero, most of it what a writer of XML must look at twice.
std::wstring randomText(std::mt19937& random)
{
    static const std::wstring kCharacters =
        L"ab:1 "
        L"<>&\"'\n\t\r]-?"
        L"\x01\x0b\x1f\x7f\u0085\u00e4\u65e5\ufeff\ufffe\uffff\xd800\xdc00\U0001F600\U0010ffff\x110000";
    std::wstring text(random() % 6, L' ');
    for (wchar_t& character : text)
        character = kCharacters[random() % kCharacters.size()];
    return text;
}

/// Makes the same random call of the filer and, when it is to be accepted, of Qt's writer.
void makeCall(std::mt19937& random, IKelXmlFiler& filer, QXmlStreamWriter& qt)
{
    const std::wstring first = randomText(random);
    const std::wstring second = randomText(random);
    const wchar_t* const one = first.c_str();
    const wchar_t* const two = second.c_str();
    const QString qtOne = QString::fromStdWString(first);
    const QString qtTwo = QString::fromStdWString(second);
    const bool hasOne = !first.empty();
    const bool hasBoth = hasOne && !second.empty();
    const struct
    {
        bool accepted;
        std::function<int()> ours;
        std::function<void()> qts;
    } calls[] = {
        {true, [&] { return filer.writeDocBegin(); }, [&] { qt.writeStartDocument(); }},
        {true, [&] { return filer.writeDocEnd(); }, [&] { qt.writeEndDocument(); }},
        {hasOne, [&] { return filer.writeElmBegin(one); }, [&] { qt.writeStartElement(qtOne); }},
        {hasOne, [&] { return filer.writeElmBegin(one); }, [&] { qt.writeStartElement(qtOne); }},
        {hasBoth, [&] { return filer.writeElmBegin(one, two); }, [&] { qt.writeTextElement(qtOne, qtTwo); }},
        {true, [&] { return filer.writeElmEnd(); }, [&] { qt.writeEndElement(); }},
        {true, [&] { return filer.writeElmFullEnd(); }, [&] { qt.writeEndElement(); }},
        {hasOne, [&] { return filer.writeAttribute(one, two); }, [&] { qt.writeAttribute(qtOne, qtTwo); }},
        {hasOne, [&] { return filer.writeText(one); }, [&] { qt.writeCharacters(qtOne); }},
        {hasOne, [&] { return filer.writeCData(one); }, [&] { qt.writeCDATA(qtOne); }},
        {hasOne, [&] { return filer.writeComment(one); }, [&] { qt.writeComment(qtOne); }},
    };
    const auto& call = calls[random() % std::size(calls)];
    ASSERT_EQ(call.ours(), call.accepted ? 0 : 2);
    if (call.accepted)
        call.qts();
}

} // namespace

TEST_F(FilerTest, AnyOrderOfCallsWritesByteForByteWhatQtWrites)
{
    const QString reference = m_directory.filePath(QStringLiteral("reference.xml"));
    for (unsigned seed = 0; seed < 600; ++seed) {
        std::mt19937 random(seed);
        const bool autoFormat = seed % 2 != 0;
        const Filer filer = makeFiler(m_path, autoFormat);
        QFile file(reference);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Text));
        QXmlStreamWriter qt(&file);
        qt.setAutoFormatting(autoFormat);
        for (int call = 0; call < 40; ++call)
            makeCall(random, *filer, qt);
        filer->close();
        file.close();
        ASSERT_EQ(contentOf(m_path), contentOf(reference)) << "seed " << seed;
    }
}

namespace
{

/// Calls by place in the dispatch table, as a caller does that was compiled against the table alone.
template <class Result, class... Arguments>
Result callSlot(const Filer& filer, std::size_t slot, Arguments... arguments)
{
    using Function = Result (*)(IKelXmlFiler*, Arguments...);
    const Function* const table = *reinterpret_cast<const Function* const*>(filer.get());
    return table[slot](filer.get(), arguments...);
}

} // namespace

TEST_F(FilerTest, DispatchTableHoldsTheOperationsInTheirOrder)
{
    const wchar_t* const none = nullptr;
    wchar_t buffer[] = L"kept";
    const Filer filer = makeFiler(m_path, true);
    EXPECT_EQ(callSlot<int>(filer, 2), 6);
    EXPECT_EQ(callSlot<int>(filer, 3), 2);
    EXPECT_EQ(callSlot<int>(filer, 4), 1);
    callSlot<void>(filer, 5, &buffer[0], 4);
    EXPECT_STREQ(buffer, L"kept");
    EXPECT_EQ(callSlot<int>(filer, 6), 0);
    EXPECT_EQ(callSlot<int>(filer, 8, L"r"), 0);
    EXPECT_EQ(callSlot<int>(filer, 12, none), 2);
    EXPECT_EQ(callSlot<int>(filer, 13), 0);
    EXPECT_EQ(callSlot<int>(filer, 14, L"a", L"v"), 0);
    EXPECT_EQ(callSlot<int>(filer, 9, L"e", L"one"), 0);
    EXPECT_EQ(callSlot<int>(filer, 8, L"f"), 0);
    EXPECT_EQ(callSlot<int>(filer, 15, L"two"), 0);
    EXPECT_EQ(callSlot<int>(filer, 16, L"<"), 0);
    EXPECT_EQ(callSlot<int>(filer, 17, true), 0);
    EXPECT_EQ(callSlot<int>(filer, 18, 1), 0);
    EXPECT_EQ(callSlot<int>(filer, 19, 1L), 0);
    EXPECT_EQ(callSlot<int>(filer, 20, 1.F), 0);
    EXPECT_EQ(callSlot<int>(filer, 21, 1.), 0);
    EXPECT_EQ(callSlot<int>(filer, 22, none), 2);
    EXPECT_EQ(callSlot<int>(filer, 23, none, none, none), 2);
    EXPECT_EQ(callSlot<int>(filer, 24, L"three"), 0);
    EXPECT_EQ(callSlot<int>(filer, 25, L"four"), 0);
    EXPECT_EQ(callSlot<int>(filer, 26, &kByte, -1, 1), 2);
    EXPECT_EQ(callSlot<int>(filer, 10), 0);
    EXPECT_EQ(callSlot<int>(filer, 8, L"g"), 0);
    EXPECT_EQ(callSlot<int>(filer, 11), 0);
    EXPECT_EQ(callSlot<int>(filer, 7), 0);
    EXPECT_EQ(callSlot<int>(filer, 28), 0);
    const std::string written = contentOf(m_path);
    EXPECT_EQ(written, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r a=\"v\">\n    <e>one</e>\n"
                       "    <f>two&lt;<![CDATA[three]]><!--four-->\n    </f>\n    <g/>\n</r>\n");
    EXPECT_EQ(callSlot<int>(filer, 27), 0);
    EXPECT_EQ(callSlot<int>(filer, 8, L"late"), 0);
    EXPECT_EQ(callSlot<int>(filer, 28), 0);
    EXPECT_EQ(contentOf(m_path), written);
}

namespace
{

struct Outcome
{
    bool failed; ///< the allocation was reached
    bool thrown;
    std::size_t lost; ///< what is still live of what was made
};

template <class Make>
Outcome failAt(std::size_t nth, Make make)
{
    const std::size_t before = allocations::live();
    bool thrown = false;
    const allocations::FailAt failure(nth);
    try {
        make();
    } catch (const std::bad_alloc&) {
        thrown = true;
    }
    return {failure.failed(), thrown, allocations::live() - before};
}

} // namespace

TEST_F(FilerTest, FactoryThatRunsOutOfMemoryThrowsAndGivesBackWhatItTook)
{
    const std::wstring path = m_path.toStdWString();
    const auto makeFilerOnce = [&] {
        Filer(morvCreateXmlFiler(path.c_str(), KelXmlLib::eEncodingUtf8, 0, true, true, nullptr, nullptr));
    };
    makeFilerOnce();
    bool reached = true;
    for (std::size_t nth = 1; reached; ++nth) {
        // Qt's writer loses its encoder when its own constructor runs out of memory; it is the second thing
        // made.
        const std::size_t lostByQt = failAt(nth - 1, [] { QXmlStreamWriter(); }).lost;
        const Outcome outcome = failAt(nth, makeFilerOnce);
        EXPECT_EQ(outcome.lost, lostByQt) << "allocation " << nth;
        EXPECT_EQ(outcome.thrown, outcome.failed) << "allocation " << nth;
        reached = outcome.failed;
        ASSERT_LT(nth, 500U);
        ASSERT_TRUE(reached || nth > 10 || !allocations::kCanFail);
    }
}
