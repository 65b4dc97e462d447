// Returns the characters of a document in the order in which Qt's parser reads them. The stream gets the
// document piece by piece. After a reference to an entity, `Prescanner` splices in the value of the entity:
// the stream returns the characters of the value, and then continues after the reference. Each such insertion
// is a splice.

#pragma once

#include <QtCore/QString>
#include <functional>
#include <vector>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kelxml::parsing
{

class CharacterStream
{
public:
    /// `get` returns this value at the end of the text. U+FFFE and U+FFFF within a text end the text too,
    /// because the parser uses these two values as its end marks.
    static constexpr char16_t kEnd = 0xFFFF;

    /// Returns the next piece of the document; an empty string at the end of the document.
    using NextPiece = std::function<QString()>;

    explicit CharacterStream(NextPiece nextPiece) : m_nextPiece(std::move(nextPiece)) {}

    char16_t get()
    {
        if (m_span.at == m_span.end && !refill())
            return kEnd;
        const char16_t c = *m_span.at++;
        return isEnd(c) ? finish() : c;
    }

    /// Reads characters until `stops` returns true for a character. Returns this character, or `kEnd`.
    template <typename Stops>
    char16_t skipUntil(Stops stops)
    {
        char16_t c = get();
        while (c != kEnd && !stops(c))
            c = get();
        return c;
    }

    /// Reads characters until it finds one of `Stops`. Returns this character, or `kEnd`.
    template <char16_t... Stops>
    char16_t seek()
    {
        return seek<Stops...>([](QStringView) {});
    }

    /// Reads characters until it finds one of `Stops`. Returns this character, or `kEnd`. Passes all
    /// characters before the returned one to `passed`, many at a time.
    template <char16_t... Stops, typename Passed>
    char16_t seek(Passed passed)
    {
        while (m_span.at != m_span.end || refill()) {
            const char16_t* const from = m_span.at;
            m_span.at = findAny<Stops...>(from, m_span.end);
            if (m_span.at != from)
                passed(QStringView(from, m_span.at));
            if (m_span.at != m_span.end)
                return get();
        }
        return kEnd;
    }

    /// Makes the stream return the characters of `text` next, and then continue where it was. The characters
    /// of `text` must outlive the stream.
    /// \param literal whether `text` replaces a reference inside a quoted value
    void splice(QStringView text, bool literal)
    {
        m_pendingOutside = pending();
        m_outer.push_back(m_span);
        m_span = spanOf(text, literal);
    }

    /// Number of open splices. A splice stays open until the stream reads the first character after the
    /// splice, as in the parser.
    std::size_t openSplices() const { return m_outer.size(); }
    bool isInSplice() const { return !m_outer.empty(); }
    /// Number of unread characters in open splices.
    qint64 pending() const { return isInSplice() ? m_pendingOutside + (m_span.end - m_span.at) : 0; }
    /// Whether the last character came from a splice inside a quoted value. If such a character is a quote,
    /// it does not end the quoted value.
    bool isLiteral() const { return m_span.literal; }

private:
    struct Span
    {
        const char16_t* at = nullptr;
        const char16_t* end = nullptr;
        bool literal = false;
    };

    static Span spanOf(QStringView text, bool literal)
    {
        return {text.utf16(), text.utf16() + text.size(), literal};
    }
    static bool isEnd(char16_t c) { return (c | 1) == kEnd; }
    template <char16_t... Stops>
    static const char16_t* findAny(const char16_t* at, const char16_t* end);
    bool refill();
    char16_t finish();

    NextPiece m_nextPiece;
    QString m_piece;
    Span m_span;
    qint64 m_pendingOutside = 0; // number of unread characters in all open splices except the innermost
    std::vector<Span> m_outer;   // the unread rest of each interrupted text; the document comes first
};

// Compares eight characters at a time, for speed: the stream skips most characters of a text here.
template <char16_t... Stops>
const char16_t* CharacterStream::findAny(const char16_t* at, const char16_t* end)
{
#ifdef __SSE2__
    const auto all = [](char16_t c) { return _mm_set1_epi16(static_cast<short>(c)); };
    for (; end - at >= 8; at += 8) {
        const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        __m128i hits = _mm_cmpeq_epi16(_mm_or_si128(eight, all(1)), all(kEnd));
        ((hits = _mm_or_si128(hits, _mm_cmpeq_epi16(eight, all(Stops)))), ...);
        if (const int mask = _mm_movemask_epi8(hits))
            return at + __builtin_ctz(static_cast<unsigned>(mask)) / 2;
    }
#endif
    while (at != end && !isEnd(*at) && ((*at != Stops) && ...))
        ++at;
    return at;
}

} // namespace kelxml::parsing
