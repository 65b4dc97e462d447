// Reading, keeping and reading again.

#include "dom/replay_device.h"

#include "dom/text_bounds.h"

#include <algorithm>
#include <cstring>

namespace kelxml
{

ReplayDevice::ReplayDevice(QIODevice& source) : m_source(source)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    // Else what is kept would be copied again and again as it grows.
    m_seen.reserve(static_cast<int>(std::min(source.size(), bounds::kMaxLength)));
}

qint64 ReplayDevice::readData(char* data, qint64 maxSize)
{
    const qint64 from = pos();
    while (!m_sourceEnded && m_seen.size() < from + maxSize) {
        const int seen = m_seen.size();
        m_seen.resize(static_cast<int>(from + maxSize));
        const qint64 more = m_source.read(m_seen.data() + seen, m_seen.size() - seen);
        m_sourceEnded = more <= 0;
        m_seen.resize(seen + static_cast<int>(std::max<qint64>(more, 0)));
    }
    const qint64 size = std::clamp<qint64>(m_seen.size() - from, 0, maxSize);
    std::memcpy(data, m_seen.constData() + from, static_cast<std::size_t>(size));
    return size;
}

} // namespace kelxml
