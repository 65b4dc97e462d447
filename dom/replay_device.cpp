// Reading, keeping and reading again.

#include "dom/replay_device.h"

#include <algorithm>
#include <cstring>

namespace kelxml
{

ReplayDevice::ReplayDevice(QIODevice& source) : m_source(source)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 ReplayDevice::readData(char* data, qint64 maxSize)
{
    const qint64 from = pos();
    while (!m_sourceEnded && m_seen.size() < from + maxSize) {
        const QByteArray more = m_source.read(from + maxSize - m_seen.size());
        m_sourceEnded = more.isEmpty();
        m_seen += more;
    }
    const qint64 size = std::clamp<qint64>(m_seen.size() - from, 0, maxSize);
    std::memcpy(data, m_seen.constData() + from, static_cast<std::size_t>(size));
    return size;
}

} // namespace kelxml
