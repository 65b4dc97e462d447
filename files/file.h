// Files that Qt opens.

#pragma once

#include "files/path.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>

namespace kelxml::files
{

/// To be called before Qt's objects for a file are created. Qt crashes if memory runs out while it creates
/// the first `QObject` of a thread, or connects a text stream to its device. Allocating and freeing this much
/// first makes a failure there unlikely. \throw std::bad_alloc
inline void ensureMemoryForQt()
{
    constexpr int kBytes = 64 * 1024;
    QByteArray(kBytes, Qt::Uninitialized);
}

/// Ensures the memory first, so it is the first base class.
struct MemoryForQt
{
    MemoryForQt() { ensureMemoryForQt(); }
};

/// A file whose path was checked and that has the memory Qt needs. Everything that Qt opens is one of these.
class File : private MemoryForQt, public QFile
{
public:
    /// To be opened by descriptor.
    File() = default;
    explicit File(const Path& path) : QFile(path.name()) {}

    /// Creates the file or empties it.
    bool openForWriting() { return open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text); }
};

} // namespace kelxml::files
