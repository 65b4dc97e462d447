// The way back out of splices that were read to their end.

#include "guards/character_stream.h"

namespace kelxml::guards
{

bool CharacterStream::refill()
{
    while (m_span.at == m_span.end && !m_outer.empty()) {
        m_span = m_outer.back();
        m_outer.pop_back();
    }
    return m_span.at != m_span.end;
}

char16_t CharacterStream::finish()
{
    m_outer.clear();
    m_span = {};
    return kEnd;
}

} // namespace kelxml::guards
