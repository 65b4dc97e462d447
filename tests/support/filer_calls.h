// The filer's calls, made with Qt's writer as well. Each status depends on the texts alone, and the bytes are
// Qt's. A seeded generator or a fuzzer's bytes choose the calls and the texts. Where the calls make an
// element, another parser reads it back.

#pragma once

#include "KelXmlLib/filer.h"
#include "support/own_host.h"
#include "support/require.h"

#include <QtCore/QByteArray>
#include <QtCore/QRegularExpression>
#include <QtCore/QString>
#include <algorithm>
#include <expat.h>
#include <list>
#include <memory>
#include <string>
#include <utility>

namespace filer_calls
{

using Text = const wchar_t*;
using W = QXmlStreamWriter&;
using Q = const QString&;

struct Call
{
    const char* name;
    int slot;               ///< its place in the vtable, through which it is called
    int required = 0;       ///< how many of its two texts must be present
    const char* found = ""; ///< by a parser, in the signs of `readBack`, 1 and 2 being the texts
    void (*qts)(W writer, Q one, Q two) = [](W, Q, Q) {};

    int answer(IKelXmlFiler& to, Text one, Text two) const { return own_host::call(&to, slot, one, two); }
    int expected(Text one, Text two) const
    {
        const bool isMissing = (required > 0 && !(one && *one)) || (required > 1 && !(two && *two));
        return isMissing ? KelXmlLib::eStatusInvalidArgument : KelXmlLib::eStatusAccepted;
    }
};

inline const Call kCalls[] = {
    {"writeElmBegin", 8, 1, "<1", [](W w, Q a, Q) { w.writeStartElement(a); }},
    {"writeElmBegin", 9, 2, "<12>", [](W w, Q a, Q b) { w.writeTextElement(a, b); }},
    {"writeText", 15, 1, "1", [](W w, Q a, Q) { w.writeCharacters(a); }},
    {"writeRawText", 16, 1, "1", [](W w, Q a, Q) { w.writeCharacters(a); }},
    {"writeCData", 24, 1, "[1]", [](W w, Q a, Q) { w.writeCDATA(a); }},
    {"writeComment", 25, 1, "!1", [](W w, Q a, Q) { w.writeComment(a); }},
    {"writeAttribute", 14, 1, "@1=2", [](W w, Q a, Q b) { w.writeAttribute(a, b); }},
    {"writeElmEnd", 10, 0, ">", [](W w, Q, Q) { w.writeEndElement(); }},
    {"writeElmFullEnd", 11, 0, ">", [](W w, Q, Q) { w.writeEndElement(); }},
    {"writeDocBegin", 6, 0, "", [](W w, Q, Q) { w.writeStartDocument(); }},
    {"writeDocEnd", 7, 0, "", [](W w, Q, Q) { w.writeEndDocument(); }}};
constexpr std::size_t kContent = 6; ///< the first ones make an element's content
inline const Call &kStartElement = kCalls[0], &kTextElement = kCalls[1], &kCData = kCalls[4],
                  &kComment = kCalls[5], &kAttribute = kCalls[6], &kEndElement = kCalls[7];
inline const Call kNoOps[] = {
    {"writeAttrBegin", 12, 1},  {"writeAttrEnd", 13},        {"writeValue(bool)", 17},
    {"writeValue(int)", 18},    {"writeValue(long)", 19},    {"writeValue(float)", 20},
    {"writeValue(double)", 21}, {"writeValue(text)", 22, 1}, {"writeDocType", 23, 1}};
/// Written unchanged, though no parser reads it.
inline const std::pair<const Call*, Text> kUnreadable[] = {
    {&kComment, L"a--b"}, {&kComment, L"a-"},   {&kComment, L"\x01"},    {&kComment, L"\uffff"},
    {&kCData, L"\x0b"},   {&kCData, L"\ufffe"}, {&kTextElement, L"a b"}, {&kTextElement, L"\xd800"}};

/// Most of them need care in a writer of XML. The first `kReadable` can be read back from everywhere.
constexpr wchar_t kUnits[] =
    L"ab:1 <>&\"'\n\t\r]?!\x7f\u0085\u00a0\u00e4\u2028\u65e5\ufeff\U0001f600\U0010ffff"
    L"\xd800\xdbff\xdc00\xdfff\x110000\x4010000\x7fffffff\xfffe0000\xffffffff"
    L"-\x01\x0b\x1f\ufffe\uffff"; // and the ending zero
constexpr std::size_t kReadable = std::size(kUnits) - 7;

/// The text as the filer must write it: U+FFFD for what is no character.
inline QString writtenOf(Text given)
{
    std::wstring text(given ? given : L"");
    std::replace_if(
        text.begin(), text.end(), [](wchar_t unit) { return static_cast<char32_t>(unit) > 0x10FFFF; },
        0xFFFD);
    // Both conversions drop one byte order mark, and the second one replaces stray surrogates.
    return QString::fromStdWString(L'\ufeff' + QString::fromStdWString(text).toStdWString());
}

/// \return what expat finds in a document: `<` and a name, `@` and an attribute, characters, CDATA in
///         brackets, `!` and a comment, `>` for an end; nothing if the document is not well-formed
inline QByteArray readBack(const QByteArray& document)
{
    QByteArray found;
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> owner(XML_ParserCreate(nullptr),
                                                                             XML_ParserFree);
    const XML_Parser parser = owner.get();
    static const auto add = [](void* to, const QByteArray& what) { *static_cast<QByteArray*>(to) += what; };
    XML_SetUserData(parser, &found);
    XML_SetElementHandler(
        parser,
        [](void* to, const char* name, const char** attributes) {
            add(to, QByteArray("<") + name);
            for (; *attributes; attributes += 2)
                add(to,
                    QByteArray("@") + attributes[0] + '=' + QByteArray(attributes[1]).replace('\r', "&13;"));
        },
        [](void* to, auto) { add(to, ">"); });
    XML_SetCharacterDataHandler(
        parser, [](void* to, const char* text, int length) { add(to, QByteArray(text, length)); });
    const auto beginCdata = [](void* to) { add(to, "["); };
    XML_SetCdataSectionHandler(parser, beginCdata, [](void* to) { add(to, "]"); });
    XML_SetCommentHandler(parser, [](void* to, const char* text) { add(to, QByteArray("!") + text); });
    return XML_Parse(parser, document.data(), document.size(), 1) == XML_STATUS_OK ? found : QByteArray();
}

/// The filer and Qt's writer, which get the same calls.
class Writers
{
public:
    Writers(const std::wstring& path, Choose choose)
        : m_choose(std::move(choose)), m_path(QString::fromStdWString(path)), m_autoFormat(m_choose(2)),
          m_qt(&m_expected), m_filer(morvCreateXmlFiler(path.c_str(), KelXmlLib::eEncodingUtf16, 7,
                                                        m_autoFormat, true, L"", nullptr))
    {
        m_qt.setAutoFormatting(m_autoFormat);
        require(own_host::call(m_filer.get(), 4) == m_autoFormat);
    }

    /// Makes an element, or any calls, and closes the file or leaves that to the filer's end.
    /// \throw std::logic_error with the rule that does not hold and the calls so far
    void compare()
    {
        try {
            makeAndCompare();
        } catch (const std::exception& failure) {
            throw std::logic_error(failure.what() + ("\nafter" + m_log));
        }
    }

private:
    void makeAndCompare()
    {
        finish(28); // what an earlier filer wrote is gone
        const bool isElement = m_choose(2);
        if (isElement)
            makeElement();
        else
            makeAnyCalls();
        for (unsigned left = m_choose(3); left > 0; --left)
            finish(27);
        m_filer.reset();
        compareFile();
        if (isElement)
            compareWithReadBack();
    }
    /// Null, empty, or some of the first `kinds` units; some texts are longer than a file's buffer.
    Text chooseText(std::size_t kinds = std::size(kUnits))
    {
        const unsigned length = m_choose(10);
        std::wstring& text = m_texts.emplace_back();
        for (unsigned index = 0; index < length; ++index)
            text.append(length == 8 ? 1000 : 1, kUnits[m_choose(kinds)]);
        return length == 9 ? nullptr : text.c_str();
    }
    void make(const Call& call, Text one = nullptr, Text two = nullptr)
    {
        const auto start = [](Text text) {
            return text ? shown(std::wstring(text, wcsnlen(text, 20))) : "null";
        };
        m_log += std::string(" ") + call.name + '(' + start(one) + ", " + start(two) + ')';
        const int expected = call.expected(one, two);
        requireEqual(call.answer(*m_filer, one, two), expected, "the status");
        if (expected != KelXmlLib::eStatusAccepted)
            return;
        const QString first = writtenOf(one), second = writtenOf(two);
        call.qts(m_qt, first, second);
        for (const char* sign = call.found; *sign; ++sign) {
            if (*sign == '1')
                m_found += foundOf(*call.found, first);
            else if (*sign == '2')
                m_found += foundOf(sign[-1], second);
            else
                m_found += QLatin1Char(*sign);
        }
    }
    /// Flushes sometimes.
    void makeAnyCalls()
    {
        for (unsigned left = m_choose(80); left > 0; --left) {
            if (m_choose(20) == 0)
                finish(28);
            const Call& call =
                m_choose(3) ? kCalls[m_choose(std::size(kCalls))] : kNoOps[m_choose(std::size(kNoOps))];
            make(call, chooseText(), chooseText());
        }
    }
    /// Makes an element that a parser can read, or, sometimes, cannot.
    void makeElement()
    {
        static constexpr Text kNames[] = {L"a", L"b:c", L"\u00e4\u65e51-", L"\ufeffz"};
        make(kStartElement, kNames[m_choose(4)]);
        for (unsigned name = m_choose(5); name-- > 0;)
            make(kAttribute, kNames[name], chooseText());
        for (unsigned left = m_choose(8); left > 0; --left) {
            const Call& call = kCalls[m_choose(kContent)];
            const bool isAsItIs = &call == &kCData || &call == &kComment;
            if (&call == &kStartElement)
                makeElement();
            else if (*call.found == '<')
                make(call, kNames[m_choose(4)], chooseText());
            else
                make(call, chooseText(isAsItIs ? kReadable : std::size(kUnits)));
        }
        if (m_choose(20) == 0) {
            const auto& [call, text] = kUnreadable[m_choose(std::size(kUnreadable))];
            make(*call, text, L"text");
            m_isReadable = false;
        }
        make(kEndElement);
    }
    /// Flushes or closes.
    void finish(int slot)
    {
        requireEqual(own_host::call(m_filer.get(), slot), 0, slot == 28 ? "flush" : "close");
        compareFile();
    }
    void compareFile() const
    {
        requireEqual(contentOf(m_path).toStdString(), m_expected.toStdString(), "the file has Qt's bytes");
    }
    /// All line breaks are equal to a parser. In formatted output, white space does not count.
    void compareWithReadBack() const
    {
        const auto comparable = [this](QByteArray found) {
            found.replace("\r\n", "\n").replace('\r', '\n');
            return (m_autoFormat ? found.simplified().replace(' ', "") : found).toStdString();
        };
        requireEqual(comparable(readBack(m_expected)),
                     m_isReadable ? comparable(m_found.toUtf8()) : std::string(),
                     "another parser reads back what was written");
    }
    /// What a parser finds of a text after a sign.
    static QString foundOf(char sign, QString text)
    {
        static const QRegularExpression kNotAllowed(
            QStringLiteral("[\\x01-\\x08\\x0b\\x0c\\x0e-\\x1f\\x{fffe}\\x{ffff}]"));
        if (sign == '[')
            return text.replace(QLatin1String("]]>"), QLatin1String("]]][>"));
        if (sign == '=')
            text.replace(QLatin1Char('\r'), QLatin1String("&13;"));
        return text.remove(kNotAllowed);
    }

    Choose m_choose;
    std::list<std::wstring> m_texts;
    QString m_path;
    bool m_autoFormat;
    bool m_isReadable = true;
    std::string m_log; ///< the calls so far
    QByteArray m_expected;
    QString m_found; ///< by a parser
    QXmlStreamWriter m_qt;
    std::unique_ptr<IKelXmlFiler> m_filer;
};

} // namespace filer_calls
