// Chunks of a document, and the way back out of splices that were read to their end.

#include "dom/text_stream.h"

#include "dom/text_bounds.h"

#include <QtCore/QIODevice>
#include <QtXml/QXmlInputSource>
#include <algorithm>

// Deprecated, and still what QDomDocument reads a device through: no other class decodes as it does.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace kelxml
{

DocumentChunks::DocumentChunks(QStringView text) : m_whole(text) {}

DocumentChunks::DocumentChunks(QIODevice& device)
    : m_device(&device), m_start(device.pos()),
      m_mostBytes(std::clamp(device.size(), bounds::kMaxUnsizedLength, bounds::kMaxLength)),
      m_source(std::make_unique<QXmlInputSource>(&device))
{}

DocumentChunks::~DocumentChunks() = default;

QStringView DocumentChunks::next()
{
    if (!m_device) {
        const QStringView all = m_wholeTaken ? QStringView() : m_whole;
        m_wholeTaken = true;
        return all;
    }
    if (endless())
        return {};
    m_source->fetchData();
    m_chunk = m_source->data();
    return m_chunk;
}

bool DocumentChunks::endless() const
{
    return m_device && m_device->pos() - m_start > m_mostBytes;
}

qint64 DocumentChunks::length() const
{
    if (!m_device)
        return m_whole.size();
    const qint64 here = m_device->pos();
    m_device->seek(m_start);
    DocumentChunks again(*m_device);
    qint64 length = 0;
    for (QStringView chunk = again.next(); !chunk.isEmpty(); chunk = again.next())
        length += chunk.size();
    m_device->seek(here);
    return length;
}

bool TextStream::refill()
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

char16_t TextStream::finish()
{
    m_outer.clear();
    m_span = {};
    m_finished = true;
    return kEnd;
}

} // namespace kelxml
