// Collects text and passes the text to a sink in long pieces. `putEscaped` also escapes characters that have
// a meaning in XML, and characters that the encoding cannot represent.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <QtCore/QString>

class QTextCodec;

namespace kelxml::serialize
{

/// Selects characters that `putEscaped` escapes only on request. `putEscaped` always escapes `<`, `&`, the
/// `>` of `]]>`, and characters that the encoding cannot represent.
struct Escapes
{
    bool quotes = false;
    /// Line feeds, carriage returns and tabs. In an attribute, a parser would turn these characters into
    /// spaces.
    bool blanks = false;
    /// Carriage returns only. Outside attributes, a parser would turn a carriage return into a line feed.
    bool carriageReturns = false;
};

class Output
{
public:
    using Sink = std::function<void(const QChar* text, int length)>;

    /// \param codec the codec of the encoding; must outlive this object. If null, every character is written
    ///        as it is
    /// \param write receives the pieces of text
    Output(const QTextCodec* codec, Sink write);

    void put(char16_t unit) { m_text += unit; }
    void put(const char16_t* literal) { m_text += literal; }
    void put(const QString& text) { m_text.append(unitsOf(text), static_cast<std::size_t>(text.size())); }
    /// Appends several texts.
    template <class First, class Second, class... More>
    void put(const First& first, const Second& second, const More&... more)
    {
        put(first);
        put(second, more...);
    }
    void putSpaces(int count) { m_text.append(static_cast<std::size_t>(count), u' '); }
    void putEscaped(const QString& text, Escapes escapes);

    void flushIfLong()
    {
        if (m_text.size() >= kPiece)
            flush();
    }
    void flush();

private:
    /// How `putEscaped` treats a UTF-16 code unit. `m_units` caches the treatment of each unit, because the
    /// codec needs up to a microsecond to check whether the encoding can represent a unit.
    enum class Unit : std::uint8_t {
        unknown,     ///< not checked yet
        plain,       ///< never escaped
        special,     ///< `putSpecial` decides whether to escape the unit
        unencodable, ///< always escaped, because the encoding cannot represent the unit
    };
    static constexpr std::size_t kPiece = 16'384;

    static const char16_t* unitsOf(const QString& text)
    {
        return reinterpret_cast<const char16_t*>(text.constData());
    }
    bool isPlain(char16_t unit);
    bool canEncode(char16_t unit) const;
    bool isEscaped(char16_t unit, Escapes escapes, std::size_t start) const;
    void putSpecial(char16_t unit, Escapes escapes, std::size_t start);

    const QTextCodec* const m_codec;
    const Sink m_write;
    std::u16string m_text;
    std::vector<Unit> m_units;
};

} // namespace kelxml::serialize
