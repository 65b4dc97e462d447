// The filer's calls, made of Qt's writer as well: the status is the one that the texts call for, and the
// bytes are Qt's. What is called, with what, is chosen by a seeded generator or by a fuzzer's bytes.

#pragma once

#include "KelXmlLib/filer.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace filer_calls
{

/// Which of its two texts a call cannot do without.
enum Needs { Nothing, First, Both, MoreThanItGets };

using F = IKelXmlFiler&;
using T = const wchar_t*;
using W = QXmlStreamWriter&;
using Q = const QString&;

struct Call
{
    Needs needs;
    KelXmlLib::eStatus (*ours)(F filer, T one, T two);
    void (*qts)(W writer, Q one, Q two);

    KelXmlLib::eStatus expected(T one, T two) const
    {
        const bool hasFirst = one && *one;
        const bool isAccepted =
            needs == Nothing || (needs == First && hasFirst) || (needs == Both && hasFirst && two && *two);
        return isAccepted ? KelXmlLib::eStatusAccepted : KelXmlLib::eStatusInvalidArgument;
    }
};

inline void writeNothing(W, Q, Q) {}
inline constexpr unsigned char kByte = 0;

inline const Call kStartElement = {First, [](F f, T a, T) { return f.writeElmBegin(a); },
                                   [](W w, Q a, Q) { w.writeStartElement(a); }};
inline const Call kCalls[] = {
    {Nothing, [](F f, T, T) { return f.writeDocBegin(); }, [](W w, Q, Q) { w.writeStartDocument(); }},
    {Nothing, [](F f, T, T) { return f.writeDocEnd(); }, [](W w, Q, Q) { w.writeEndDocument(); }},
    kStartElement,
    {Both, [](F f, T a, T b) { return f.writeElmBegin(a, b); },
     [](W w, Q a, Q b) { w.writeTextElement(a, b); }},
    {Nothing, [](F f, T, T) { return f.writeElmEnd(); }, [](W w, Q, Q) { w.writeEndElement(); }},
    {Nothing, [](F f, T, T) { return f.writeElmFullEnd(); }, [](W w, Q, Q) { w.writeEndElement(); }},
    {First, [](F f, T a, T b) { return f.writeAttribute(a, b); },
     [](W w, Q a, Q b) { w.writeAttribute(a, b); }},
    {First, [](F f, T a, T) { return f.writeText(a); }, [](W w, Q a, Q) { w.writeCharacters(a); }},
    {First, [](F f, T a, T) { return f.writeRawText(a); }, [](W w, Q a, Q) { w.writeCharacters(a); }},
    {First, [](F f, T a, T) { return f.writeCData(a); }, [](W w, Q a, Q) { w.writeCDATA(a); }},
    {First, [](F f, T a, T) { return f.writeComment(a); }, [](W w, Q a, Q) { w.writeComment(a); }},
    {First, [](F f, T a, T) { return f.writeAttrBegin(a); }, writeNothing},
    {Nothing, [](F f, T, T) { return f.writeAttrEnd(); }, writeNothing},
    {First, [](F f, T a, T) { return f.writeValue(a); }, writeNothing},
    {Nothing, [](F f, T, T) { return f.writeValue(1.5); }, writeNothing},
    {First, [](F f, T a, T b) { return f.writeDocType(a, b, b); }, writeNothing},
    {Nothing, [](F f, T, T) { return f.writeBinary(&kByte, 0, 1); }, writeNothing},
    {MoreThanItGets, [](F f, T, T) { return f.writeBinary(&kByte, -1, 1); }, writeNothing},
    {MoreThanItGets, [](F f, T, T) { return f.writeBinary(&kByte, 0, 0); }, writeNothing},
    {MoreThanItGets, [](F f, T, T) { return f.writeBinary(nullptr, 0, 1); }, writeNothing},
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
    Writers(T path, bool opens, bool autoFormat)
        : m_isOpen(opens), m_qt(&m_expected),
          m_filer(morvCreateXmlFiler(path, KelXmlLib::eEncodingUtf16, 7, autoFormat, true, L"", nullptr))
    {
        m_qt.setAutoFormatting(autoFormat);
    }

    /// \return whether the status is the one that the texts call for
    bool make(const Call& call, T one, T two)
    {
        const KelXmlLib::eStatus expected = call.expected(one, two);
        if (expected == KelXmlLib::eStatusAccepted && m_isOpen)
            call.qts(m_qt, QString::fromWCharArray(one ? one : L""),
                     QString::fromWCharArray(two ? two : L""));
        return call.ours(*m_filer, one, two) == expected;
    }
    bool make(const Call& call, const Choose& choose)
    {
        const bool hasTexts = call.needs == First || call.needs == Both;
        const auto one = hasTexts ? chooseText(choose) : std::nullopt;
        const auto two = hasTexts ? chooseText(choose) : std::nullopt;
        return make(call, one ? one->c_str() : nullptr, two ? two->c_str() : nullptr);
    }
    bool flush() { return m_filer->flush() == KelXmlLib::eStatusAccepted; }
    bool close()
    {
        m_isOpen = false;
        return m_filer->close() == KelXmlLib::eStatusAccepted;
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
