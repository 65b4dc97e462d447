// Collects text, escapes it for XML and the encoding, and passes it on in pieces.

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <QtCore/QString>

class QTextCodec;

namespace kelxml::serialize
{

/// Additional characters to escape. Always escaped are `<`, `&`, the `>` of `]]>`, and characters that the
/// encoding cannot represent.
struct Escapes
{
    bool quotes = false;
    bool blanks = false; ///< line ends and tabs, which a parser would turn into spaces in an attribute
    bool carriageReturns = false; ///< a parser would turn them into line feeds
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
    void putSpaces(int count) { m_text.append(static_cast<std::size_t>(count), u' '); }
    void putEscaped(const QString& text, Escapes escapes);

    void flushIfLong()
    {
        if (m_text.size() >= kPiece)
            flush();
    }
    void flush();

private:
    /// What is known about a UTF-16 unit. Cached, because a codec takes up to a microsecond to say whether it
    /// can encode one.
    enum class Unit : std::uint8_t {
        unknown,
        plain,
        special, ///< escaped in some contexts
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
