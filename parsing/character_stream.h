// The characters of a text in the order in which Qt's parser reads them: from the document, piece by piece,
// and from spliced entity values, innermost first.

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
    /// What `get` and `seek` return at the end. The parser mistakes U+FFFE and U+FFFF for its end marks.
    static constexpr char16_t kEnd = 0xFFFF;

    /// Returns the next piece of the document, an empty one at the end.
    using NextPiece = std::function<QString()>;

    explicit CharacterStream(NextPiece nextPiece) : m_nextPiece(std::move(nextPiece)) {}

    char16_t get()
    {
        if (m_span.at == m_span.end && !refill())
            return kEnd;
        const char16_t c = *m_span.at++;
        return isEnd(c) ? finish() : c;
    }

    /// Skips characters up to and including the first that `stops`, and returns that one.
    template <typename Stops>
    char16_t takeUntil(Stops stops)
    {
        char16_t c = get();
        while (c != kEnd && !stops(c))
            c = get();
        return c;
    }

    /// Skips characters up to and including the first of `Stops`, and returns that one.
    template <char16_t... Stops>
    char16_t seek()
    {
        return seek<Stops...>([](QStringView) {});
    }

    /// The same. `passed` receives the skipped characters, except the last, in runs.
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

    /// Continues with `text`, which outlives the stream; then where the stream was.
    void splice(QStringView text, bool literal)
    {
        m_pendingOutside = pending();
        m_outer.push_back(m_span);
        m_span = of(text, literal);
    }

    /// How many splices are open. As in the parser, a splice read to its end counts until the next character
    /// is read.
    std::size_t splices() const { return m_outer.size(); }
    bool spliced() const { return !m_outer.empty(); }
    /// How many characters of open splices are unread.
    qint64 pending() const { return spliced() ? m_pendingOutside + (m_span.end - m_span.at) : 0; }
    /// Whether the last character came from a splice inside a quoted value, where quotes don't end the value.
    bool literal() const { return m_span.literal; }

private:
    struct Span
    {
        const char16_t* at = nullptr;
        const char16_t* end = nullptr;
        bool literal = false;
    };

    static Span of(QStringView text, bool literal)
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
    qint64 m_pendingOutside = 0; // of the splices around the innermost one
    std::vector<Span> m_outer;   // the document's span first
};

// Most characters of most texts are skipped here, so eight at a time.
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
