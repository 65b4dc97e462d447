// Makes the same random calls on the filer and on Qt's writer. Both must write the same bytes. The status
// that the filer returns must depend only on the texts that the call passes. A seeded generator or a fuzzer's
// bytes choose the calls.

#pragma once

#include "KelXmlLib/filer.h"
#include "support/require.h"
#include "support/vtable_calls.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QXmlStreamWriter>
#include <algorithm>
#include <list>
#include <memory>
#include <string>

namespace filer_calls
{

using Text = const wchar_t*;
using W = QXmlStreamWriter&;
using Q = const QString&;

struct Call
{
    const char* name;
    int slot;         ///< in the vtable of the filer
    int required = 0; ///< how many texts, counted from the first, must not be null or empty
    void (*byQt)(W writer, Q one, Q two) = [](W, Q, Q) {}; ///< the same call on Qt's writer

    int status(IKelXmlFiler& to, Text one, Text two) const { return vtable_calls::call(&to, slot, one, two); }
    int expected(Text one, Text two) const
    {
        const bool isMissing = (required > 0 && !(one && *one)) || (required > 1 && !(two && *two));
        return isMissing ? KelXmlLib::eStatusInvalidArgument : KelXmlLib::eStatusAccepted;
    }
};

inline const Call kCalls[] = {{"writeElmBegin", 8, 1, [](W w, Q a, Q) { w.writeStartElement(a); }},
                              {"writeElmBegin", 9, 2, [](W w, Q a, Q b) { w.writeTextElement(a, b); }},
                              {"writeText", 15, 1, [](W w, Q a, Q) { w.writeCharacters(a); }},
                              {"writeRawText", 16, 1, [](W w, Q a, Q) { w.writeCharacters(a); }},
                              {"writeCData", 24, 1, [](W w, Q a, Q) { w.writeCDATA(a); }},
                              {"writeComment", 25, 1, [](W w, Q a, Q) { w.writeComment(a); }},
                              {"writeAttribute", 14, 1, [](W w, Q a, Q b) { w.writeAttribute(a, b); }},
                              {"writeElmEnd", 10, 0, [](W w, Q, Q) { w.writeEndElement(); }},
                              {"writeElmFullEnd", 11, 0, [](W w, Q, Q) { w.writeEndElement(); }},
                              {"writeDocBegin", 6, 0, [](W w, Q, Q) { w.writeStartDocument(); }},
                              {"writeDocEnd", 7, 0, [](W w, Q, Q) { w.writeEndDocument(); }},
                              // No-ops: the filer writes nothing.
                              {"writeAttrBegin", 12, 1},
                              {"writeAttrEnd", 13},
                              {"writeValue(bool)", 17},
                              {"writeValue(int)", 18},
                              {"writeValue(long)", 19},
                              {"writeValue(float)", 20},
                              {"writeValue(double)", 21},
                              {"writeValue(text)", 22, 1},
                              {"writeDocType", 23, 1}};

/// The units that random texts are made of. XML, Qt or the filer treats most of these units in a special way.
constexpr wchar_t kUnits[] =
    L"ab:1 <>&\"'\n\t\r]?!\x7f\u0085\u00a0\u00e4\u2028\u65e5\ufeff\U0001f600\U0010ffff"
    L"\xd800\xdbff\xdc00\xdfff\x110000\x4010000\x7fffffff\xfffe0000\xffffffff"
    L"-\x01\x0b\x1f\ufffe\uffff"; // the terminating zero is also a unit

/// Returns the text that the filer must write for `given`. The filer drops one byte order mark at the
/// beginning, and replaces each unit that is not a character with U+FFFD.
inline QString writtenOf(Text given)
{
    std::wstring text(given ? given : L"");
    std::replace_if(
        text.begin(), text.end(), [](wchar_t unit) { return static_cast<char32_t>(unit) > 0x10FFFF; },
        0xFFFD);
    // `toStdWString` replaces lone surrogates. The inner conversion to QString drops one byte order mark, as
    // the filer does. The outer conversion would drop another, so a mark is added for it to drop.
    return QString::fromStdWString(L'\ufeff' + QString::fromStdWString(text).toStdWString());
}

/// The filer and Qt's writer, which receive the same calls.
class Writers
{
public:
    Writers(const std::wstring& path, Choose choose)
        : m_choose(std::move(choose)), m_path(QString::fromStdWString(path)), m_autoFormat(m_choose(2)),
          m_qt(&m_expected), m_filer(morvCreateXmlFiler(path.c_str(), KelXmlLib::eEncodingUtf16, 7,
                                                        m_autoFormat, true, L"", nullptr))
    {
        m_qt.setAutoFormatting(m_autoFormat);
        requireEqual<int>(vtable_calls::call(m_filer.get(), 4), m_autoFormat, "indent() returns autoFormat");
    }

    /// Makes random calls, closes the file zero to two times, and then destroys the filer.
    /// \throw std::logic_error with the broken rule and the calls so far
    void compare()
    try {
        finish(kFlush); // at first, the file must be empty, even if it existed before
        for (unsigned left = m_choose(80); left > 0; --left) {
            if (m_choose(20) == 0)
                finish(kFlush);
            make(kCalls[m_choose(std::size(kCalls))], chooseText(), chooseText());
        }
        for (unsigned left = m_choose(3); left > 0; --left)
            finish(kClose);
        m_filer.reset();
        compareFile();
    } catch (const std::exception& failure) {
        throw std::logic_error(failure.what() + ("\nafter the calls" + m_log));
    }

private:
    /// Chooses null, an empty text, a text of a few units, or a text of up to 8,000 units, which can be
    /// longer than the buffer of a file.
    Text chooseText()
    {
        const unsigned length = m_choose(10);
        std::wstring& text = m_texts.emplace_back();
        for (unsigned index = 0; index < length; ++index)
            text.append(length == 8 ? 1000 : 1, kUnits[m_choose(std::size(kUnits))]);
        return length == 9 ? nullptr : text.c_str();
    }
    void make(const Call& call, Text one = nullptr, Text two = nullptr)
    {
        const auto start = [](Text text) {
            return text ? shown(std::wstring(text, wcsnlen(text, 20))) : "null";
        };
        m_log += std::string(" ") + call.name + '(' + start(one) + ", " + start(two) + ')';
        const int expected = call.expected(one, two);
        requireEqual(call.status(*m_filer, one, two), expected, "the status depends only on the texts");
        if (expected == KelXmlLib::eStatusAccepted)
            call.byQt(m_qt, writtenOf(one), writtenOf(two));
    }
    enum Finish { kClose = 27, kFlush = 28 }; // the slots of the two methods
    void finish(Finish slot)
    {
        requireEqual(vtable_calls::call(m_filer.get(), slot), 0, "flush and close return 0");
        compareFile();
    }
    void compareFile() const
    {
        requireEqual(contentOf(m_path).toStdString(), m_expected.toStdString(), "the file has Qt's bytes");
    }

    Choose m_choose;
    std::list<std::wstring> m_texts;
    QString m_path;
    bool m_autoFormat;
    std::string m_log; ///< the calls so far
    QByteArray m_expected;
    QXmlStreamWriter m_qt;
    std::unique_ptr<IKelXmlFiler> m_filer;
};

} // namespace filer_calls
