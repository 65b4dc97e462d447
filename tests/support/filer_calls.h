// The filer's calls, made of Qt's writer as well: the status is the one that the texts call for, and the
// bytes are Qt's. What is called, with what, is chosen by a seeded generator or by a fuzzer's bytes.

#pragma once

#include "KelXmlLib/filer.h"
#include "support/own_host.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <functional>
#include <memory>
#include <optional>
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
    int slot; ///< its place in the dispatch table, through which it is called
    Needs needs;
    void (*qts)(W writer, Q one, Q two);

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

inline void writeNothing(W, Q, Q) {}

inline const Call kStartElement = {8, First, [](W w, Q a, Q) { w.writeStartElement(a); }};
inline const Call kCalls[] = {
    {6, Nothing, [](W w, Q, Q) { w.writeStartDocument(); }},
    {7, Nothing, [](W w, Q, Q) { w.writeEndDocument(); }},
    kStartElement,
    {9, Both, [](W w, Q a, Q b) { w.writeTextElement(a, b); }},
    {10, Nothing, [](W w, Q, Q) { w.writeEndElement(); }},
    {11, Nothing, [](W w, Q, Q) { w.writeEndElement(); }},
    {12, First, writeNothing}, // an attribute's begin
    {13, Nothing, writeNothing},
    {14, First, [](W w, Q a, Q b) { w.writeAttribute(a, b); }},
    {15, First, [](W w, Q a, Q) { w.writeCharacters(a); }},
    {16, First, [](W w, Q a, Q) { w.writeCharacters(a); }},
    {17, Nothing, writeNothing}, // truth values and numbers
    {18, Nothing, writeNothing},
    {19, Nothing, writeNothing},
    {20, Nothing, writeNothing},
    {21, Nothing, writeNothing},
    {22, First, writeNothing}, // a text as a value
    {23, First, writeNothing}, // a document type
    {24, First, [](W w, Q a, Q) { w.writeCDATA(a); }},
    {25, First, [](W w, Q a, Q) { w.writeComment(a); }},
};

/// Answers a number below its argument.
using Choose = std::function<unsigned(std::size_t)>;

/// Null, empty, or some units, most of which a writer of XML must look at twice; some texts are longer than
/// a file's buffer.
inline std::optional<std::wstring> chooseText(const Choose& choose)
{
    // The ending zero is one of them.
    static constexpr wchar_t kUnits[] =
        L"ab:1 <>&\"'\n\t\r]-?!\x01\x0b\x1f\x7f\u0085\u00a0\u00e4\u2028\u65e5\ufeff\ufffe\uffff"
        L"\xd800\xdbff\xdc00\xdfff\U0001f600\U0010ffff\x110000\x7fffffff\xffffffff";
    const unsigned length = choose(10);
    if (length == 9)
        return std::nullopt;
    std::wstring text;
    for (unsigned index = 0; index < length; ++index)
        text.append(length == 8 ? 1000 : 1, kUnits[choose(std::size(kUnits))]);
    return text;
}

/// The filer and Qt's writer, which get the same calls.
class Writers
{
public:
    Writers(Text path, bool opens, bool autoFormat)
        : m_isOpen(opens), m_qt(&m_expected),
          m_filer(morvCreateXmlFiler(path, KelXmlLib::eEncodingUtf16, 7, autoFormat, true, L"", nullptr))
    {
        m_qt.setAutoFormatting(autoFormat);
    }

    /// \return whether the status is the one that the texts call for
    bool make(const Call& call, Text one, Text two)
    {
        const KelXmlLib::eStatus expected = call.expected(one, two);
        if (expected == KelXmlLib::eStatusAccepted && m_isOpen)
            call.qts(m_qt, QString::fromWCharArray(one ? one : L""),
                     QString::fromWCharArray(two ? two : L""));
        return call.answer(*m_filer, one, two) == expected;
    }
    bool make(const Call& call, const Choose& choose)
    {
        const auto one = call.needs == Nothing ? std::nullopt : chooseText(choose);
        const auto two = call.needs == Nothing ? std::nullopt : chooseText(choose);
        return make(call, one ? one->c_str() : nullptr, two ? two->c_str() : nullptr);
    }
    bool flush() { return own_host::call(m_filer.get(), 28) == KelXmlLib::eStatusAccepted; }
    bool close()
    {
        m_isOpen = false;
        return own_host::call(m_filer.get(), 27) == KelXmlLib::eStatusAccepted;
    }
    void end() { m_filer.reset(); }
    const QByteArray& expected() const { return m_expected; }

private:
    bool m_isOpen;
    QByteArray m_expected;
    QXmlStreamWriter m_qt;
    std::unique_ptr<IKelXmlFiler> m_filer;
};

} // namespace filer_calls
