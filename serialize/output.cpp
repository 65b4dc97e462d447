#include "serialize/output.h"

#include <algorithm>

#include <QtCore/QTextCodec>

namespace kelxml::serialize
{

namespace
{

constexpr std::size_t kUnits = 0x10000;

void appendReference(std::u16string& text, char16_t unit)
{
    text += u"&#x";
    text += QString::number(unit, 16).toStdU16String();
    text += u';';
}

} // namespace

Output::Output(const QTextCodec* codec, Sink write)
    : m_codec(codec), m_write(std::move(write)), m_units(kUnits, Unit::unknown)
{
    for (const char16_t unit : {u'<', u'>', u'&', u'"', u'\t', u'\n', u'\r'})
        m_units[unit] = Unit::special;
    m_text.reserve(2 * kPiece);
}

void Output::putEscaped(const QString& text, Escapes escapes)
{
    const std::size_t start = m_text.size();
    const char16_t* const end = unitsOf(text) + text.size();
    for (const char16_t* unit = unitsOf(text); unit != end;) {
        const char16_t* const next =
            std::find_if_not(unit, end, [this](char16_t one) { return isPlain(one); });
        m_text.append(unit, next);
        unit = next;
        if (unit != end)
            putSpecial(*unit++, escapes, start);
    }
}

void Output::flush()
{
    if (!m_text.empty())
        m_write(reinterpret_cast<const QChar*>(m_text.data()), static_cast<int>(m_text.size()));
    m_text.clear();
}

bool Output::isPlain(char16_t unit)
{
    Unit& known = m_units[unit];
    if (known == Unit::unknown)
        known = canEncode(unit) ? Unit::plain : Unit::unencodable;
    return known == Unit::plain;
}

bool Output::canEncode(char16_t unit) const
{
    return !m_codec || m_codec->canEncode(QChar(unit));
}

/// \param start the length that `m_text` had when the current call of `putEscaped` began
bool Output::isEscaped(char16_t unit, Escapes escapes, std::size_t start) const
{
    switch (unit) {
    case u'"':
        return escapes.quotes;
    case u'>':
        return m_text.size() >= start + 2 && m_text.compare(m_text.size() - 2, 2, u"]]") == 0;
    case u'\t':
    case u'\n':
        return escapes.blanks;
    case u'\r':
        return escapes.blanks || escapes.carriageReturns;
    default: // `<` and `&`
        return true;
    }
}

void Output::putSpecial(char16_t unit, Escapes escapes, std::size_t start)
{
    const bool isEncodable = m_units[unit] != Unit::unencodable;
    if (isEncodable && !isEscaped(unit, escapes, start) && canEncode(unit))
        m_text += unit;
    else if (unit == u'<')
        m_text += u"&lt;";
    else if (unit == u'&')
        m_text += u"&amp;";
    else if (unit == u'"' && escapes.quotes)
        m_text += u"&quot;";
    else if (unit == u'>' && isEscaped(unit, escapes, start))
        m_text += u"&gt;";
    else
        appendReference(m_text, unit);
}

} // namespace kelxml::serialize
