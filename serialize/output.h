// Collects text, escapes it for XML and the encoding, and passes it to a sink in long pieces.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <QtCore/QString>

class QTextCodec;

namespace kelxml::serialize
{

/// Additional characters to escape. `<`, `&`, the `>` of `]]>`, and characters that the encoding cannot
/// represent are always escaped.
struct Escapes
{
    bool quotes = false;
    bool blanks = false; ///< line ends and tabs: in an attribute, a parser would turn them into spaces
    bool carriageReturns = false; ///< in a text, a parser would turn them into line feeds
};

class Output
{
public:
    using Sink = std::function<void(const QChar* text, int length)>;

    /// \param codec checks which characters the encoding can represent; borrowed
    Output(const QTextCodec& codec, Sink write);

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
    /// How a UTF-16 unit is written. Cached, because a codec needs up to a microsecond to check whether it
    /// can encode a unit.
    enum class Unit : std::uint8_t {
        unknown,     ///< not checked yet
        plain,       ///< never escaped
        special,     ///< escaped in some contexts
        unencodable, ///< the encoding cannot represent it
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

    const QTextCodec& m_codec;
    const Sink m_write;
    std::u16string m_text;
    std::vector<Unit> m_units;
};

} // namespace kelxml::serialize
