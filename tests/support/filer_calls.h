// The filer's calls, made of Qt's writer as well: the status is the one that the texts call for, and the
// bytes are Qt's. What is called, with what, is chosen by a seeded generator or by a fuzzer's bytes. What
// makes an element, another parser is to read back.

#pragma once

#include "KelXmlLib/filer.h"
#include "support/own_host.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QString>
#include <expat.h>
#include <functional>
#include <list>
#include <memory>
#include <string>

namespace filer_calls
{

/// Which of its two texts a call cannot do without.
enum Needs { Nothing, First, Both };

using Text = const wchar_t*;
using W = QXmlStreamWriter&;
using Q = const QString&;

struct Call
{
    int slot; ///< its place in the vtable, through which it is called
    Needs needs = Nothing;
    const char* found = ""; ///< by a parser, in the signs of `readBack`, 1 and 2 being the texts
    void (*qts)(W writer, Q one, Q two) = [](W, Q, Q) {};

    KelXmlLib::eStatus answer(IKelXmlFiler& filer, Text one, Text two) const
    {
        return static_cast<KelXmlLib::eStatus>(own_host::call(&filer, slot, one, two));
    }
    KelXmlLib::eStatus expected(Text one, Text two) const
    {
        const bool lacksFirst = needs != Nothing && !(one && *one);
        const bool lacksSecond = needs == Both && !(two && *two);
        return lacksFirst || lacksSecond ? KelXmlLib::eStatusInvalidArgument : KelXmlLib::eStatusAccepted;
    }
};

inline const Call kCalls[] = {
    {8, First, "<1", [](W w, Q a, Q) { w.writeStartElement(a); }},
    {9, Both, "<12>", [](W w, Q a, Q b) { w.writeTextElement(a, b); }},
    {15, First, "1", [](W w, Q a, Q) { w.writeCharacters(a); }},
    {16, First, "1", [](W w, Q a, Q) { w.writeCharacters(a); }},
    {24, First, "[1]", [](W w, Q a, Q) { w.writeCDATA(a); }},
    {25, First, "!1", [](W w, Q a, Q) { w.writeComment(a); }},
    {14, First, "@1=2", [](W w, Q a, Q b) { w.writeAttribute(a, b); }},
    {10, Nothing, ">", [](W w, Q, Q) { w.writeEndElement(); }},
    {11, Nothing, ">", [](W w, Q, Q) { w.writeEndElement(); }},
    {6, Nothing, "", [](W w, Q, Q) { w.writeStartDocument(); }},
    {7, Nothing, "", [](W w, Q, Q) { w.writeEndDocument(); }},
    // Nothing is written: attribute brackets, truth values and numbers, a text as a value, a document type.
    {12, First},
    {13},
    {17},
    {18},
    {19},
    {20},
    {21},
    {22, First},
    {23, First}};
constexpr std::size_t kContent = 6; ///< the first ones make an element's content
inline const Call &kStartElement = kCalls[0], &kCData = kCalls[4], &kComment = kCalls[5],
                  &kAttribute = kCalls[6], &kEndElement = kCalls[7];

/// Most of them a writer of XML must look at twice. The first `kReadable` can be read back from everywhere.
constexpr wchar_t kUnits[] =
    L"ab:1 <>&\"'\n\t\r]?!\x7f\u0085\u00a0\u00e4\u2028\u65e5\ufeff\U0001f600\U0010ffff"
    L"\xd800\xdbff\xdc00\xdfff\x110000\x4010000\x7fffffff\xfffe0000\xffffffff"
    L"-\x01\x0b\x1f\ufffe\uffff"; // and the ending zero
constexpr std::size_t kReadable = std::size(kUnits) - 7;

inline QByteArray contentOf(const std::wstring& path)
{
    QFile file(QString::fromStdWString(path));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

/// What the filer is to write of a text: U+FFFD for what is no character.
inline QString writtenOf(Text given)
{
    std::wstring text(given ? given : L"");
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto unit = static_cast<char32_t>(text[index]);
        const wchar_t other = unit < 0xDC00 ? text[index + 1] : index > 0 ? text[index - 1] : L'\0';
        const bool isPaired = (unit ^ static_cast<char32_t>(other) ^ 0xD800 ^ 0xDC00) < 0x400;
        if (unit > 0x10FFFF || (unit >= 0xD800 && unit < 0xE000 && !isPaired))
            text[index] = 0xFFFD;
    }
    return QString::fromStdWString(text);
}

/// \return what expat finds in a document: `<` and a name, `@` and an attribute, characters, CDATA in
///         brackets, `!` and a comment, `>` for an end; nothing if the document is not well-formed
inline QByteArray readBack(const QByteArray& document)
{
    QByteArray found;
    using Owner = std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)>;
    const Owner owner(XML_ParserCreate(nullptr), XML_ParserFree);
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
    XML_SetCdataSectionHandler(
        parser, [](void* to) { add(to, "["); }, [](void* to) { add(to, "]"); });
    XML_SetCommentHandler(parser, [](void* to, const char* text) { add(to, QByteArray("!") + text); });
    const bool isRead = XML_Parse(parser, document.data(), document.size(), 1) == XML_STATUS_OK;
    return isRead ? found : QByteArray();
}

/// The filer and Qt's writer, which get the same calls.
class Writers
{
public:
    /// Answers a number below its argument.
    using Choose = std::function<unsigned(std::size_t)>;

    Writers(const std::wstring& path, Choose choose)
        : m_choose(std::move(choose)), m_path(path), m_autoFormat(m_choose(2)), m_qt(&m_expected),
          m_filer(morvCreateXmlFiler(path.c_str(), KelXmlLib::eEncodingUtf16, 7, m_autoFormat, true, L"",
                                     nullptr))
    {
        m_qt.setAutoFormatting(m_autoFormat);
    }

    /// Makes an element, or any calls while it `goesOn`, flushing now and then.
    /// \return whether every status and what came into the file was as expected
    bool areAlike(const std::function<bool()>& goesOn)
    {
        const bool isElement = m_choose(2);
        if (isElement)
            makeElement();
        while (!isElement && goesOn()) {
            if (m_choose(20) == 0)
                finish(28);
            make(kCalls[m_choose(std::size(kCalls))], chooseText(), chooseText());
        }
        finish(27);
        return m_isRight && (!isElement || isReadBack());
    }

private:
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
        const KelXmlLib::eStatus expected = call.expected(one, two);
        m_isRight = call.answer(*m_filer, one, two) == expected && m_isRight;
        if (expected != KelXmlLib::eStatusAccepted)
            return;
        call.qts(m_qt, writtenOf(one), writtenOf(two));
        for (const char* sign = call.found; *sign; ++sign)
            m_found += *sign == '1'   ? foundOf(*call.found, writtenOf(one))
                       : *sign == '2' ? foundOf(sign[-1], writtenOf(two))
                                      : QString(QLatin1Char(*sign));
    }
    /// Makes an element that a parser can read.
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
        make(kEndElement);
    }
    /// Flushes or closes.
    void finish(int slot)
    {
        const bool isAccepted = own_host::call(m_filer.get(), slot) == KelXmlLib::eStatusAccepted;
        m_isRight = m_isRight && isAccepted && contentOf(m_path) == m_expected;
    }
    /// \return whether a parser finds in the document what was written, line breaks being all alike. Where it
    ///         is formatted, white space does not count
    bool isReadBack() const
    {
        const auto comparable = [this](QByteArray found) {
            found.replace("\r\n", "\n").replace('\r', '\n');
            return m_autoFormat ? found.simplified().replace(' ', "") : found;
        };
        return comparable(readBack(m_expected)) == comparable(m_found.toUtf8());
    }
    /// What a parser finds of a text behind a sign.
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
    std::wstring m_path;
    bool m_autoFormat;
    bool m_isRight = true;
    QByteArray m_expected;
    QString m_found; ///< by a parser
    QXmlStreamWriter m_qt;
    std::unique_ptr<IKelXmlFiler> m_filer;
};

} // namespace filer_calls
