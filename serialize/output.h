// Collects text, escapes in it what XML and the encoding ask for, and passes it on in pieces.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <QtCore/QString>

class QTextCodec;

namespace kelxml::serialize
{

/// What is escaped in a text besides `<`, `&`, the `>` of `]]>`, and what the encoding cannot hold.
struct Escapes
{
    bool quotes = false;
    bool blanks = false; ///< line ends and tabs, which a parser would turn into spaces in an attribute
    bool carriageReturns = false; ///< which a parser would turn into line feeds
};

class Output
{
public:
    using Sink = std::function<void(const QChar* text, int length)>;

    /// \param codec says which characters the encoding can hold; borrowed
    Output(const QTextCodec& codec, Sink write);

    void put(char16_t unit) { m_text += unit; }
    void put(const char16_t* literal) { m_text += literal; }
    void put(const QString& text) { m_text.append(unitsOf(text), static_cast<std::size_t>(text.size())); }
    void putSpaces(int count) { m_text.append(static_cast<std::size_t>(count), u' '); }
    void putEscaped(const QString& text, Escapes escapes);

    void flushIfLong()
    {
        if (m_text.size() >= kPiece)
            flush();
    }
    void flush();

private:
    /// What is known of a UTF-16 unit. Whether a codec can encode it costs up to a microsecond to find out.
    enum class Unit : std::uint8_t {
        unknown,
        plain,
        special, ///< escaped in some places
        impossible,
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
