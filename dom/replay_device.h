// Lets what can be read only once (a pipe, a terminal) be read again from its start, by keeping what was
// read.

#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

namespace kelxml
{

/// Reads from its source no more than is asked of it: whoever stops early at bad text leaves an endless
/// source alone. It is open from the start; the source stays the caller's, open, and outlives it.
class ReplayDevice final : public QIODevice
{
public:
    explicit ReplayDevice(QIODevice& source);

    /// What the source says: 0 if it cannot know.
    qint64 size() const override { return m_source.size(); }

protected:
    /// A short answer means the end, never just that the source has no more yet: both readings come in the
    /// same pieces, and an encoding that shows in the first piece shows in both.
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QIODevice& m_source;
    QByteArray m_seen;
    bool m_sourceEnded = false;
};

} // namespace kelxml
