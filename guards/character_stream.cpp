// Chunks of a document, and the way back out of splices that were read to their end.

#include "guards/character_stream.h"

#include <QtCore/QBuffer>
#include <QtXml/QXmlInputSource>

// Deprecated, and still what QDomDocument reads a device through: no other class decodes as it does.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace kelxml::guards
{

DocumentChunks::DocumentChunks(QStringView text) : m_whole(text) {}

DocumentChunks::DocumentChunks(const QByteArray& bytes)
    : m_bytes(&bytes), m_buffer(std::make_unique<QBuffer>())
{
    m_buffer->setData(bytes);
    m_buffer->open(QIODevice::ReadOnly);
    m_source = std::make_unique<QXmlInputSource>(m_buffer.get());
}

DocumentChunks::~DocumentChunks() = default;

QStringView DocumentChunks::next()
{
    if (!m_source) {
        const QStringView all = m_wholeTaken ? QStringView() : m_whole;
        m_wholeTaken = true;
        return all;
    }
    m_source->fetchData();
    m_chunk = m_source->data();
    return m_chunk;
}

qint64 DocumentChunks::length() const
{
    if (!m_bytes)
        return m_whole.size();
    DocumentChunks again(*m_bytes);
    qint64 length = 0;
    for (QStringView chunk = again.next(); !chunk.isEmpty(); chunk = again.next())
        length += chunk.size();
    return length;
}

bool CharacterStream::refill()
{
    while (!m_outer.empty()) {
        m_span = m_outer.back();
        m_outer.pop_back();
        if (m_span.at != m_span.end)
            return true;
    }
    if (m_finished)
        return false;
    const QStringView chunk = m_chunks.next();
    m_finished = chunk.isEmpty();
    m_span = {chunk.utf16(), chunk.utf16() + chunk.size(), false};
    return !m_finished;
}

char16_t CharacterStream::finish()
{
    m_outer.clear();
    m_span = {};
    m_finished = true;
    return kEnd;
}

} // namespace kelxml::guards
