// Decides where the stream continues. At the end of an entity's value, the stream returns to the text after
// the reference to the entity. At the end of a piece of the document, the stream gets the next piece.

#include "parsing/character_stream.h"

namespace kelxml::parsing
{

bool CharacterStream::refill()
{
    while (m_span.at == m_span.end && !m_outer.empty()) {
        m_span = m_outer.back();
        m_outer.pop_back();
        m_pendingOutside -= m_outer.empty() ? 0 : m_span.end - m_span.at;
    }
    if (m_span.at == m_span.end) {
        m_piece = m_nextPiece();
        m_span = spanOf(m_piece, false);
        if (m_piece.isEmpty())
            finish();
    }
    return m_span.at != m_span.end;
}

char16_t CharacterStream::finish()
{
    m_nextPiece = [] { return QString(); };
    m_outer.clear();
    m_span = {};
    return kEnd;
}

} // namespace kelxml::parsing
