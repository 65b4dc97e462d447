// Files that Qt opens.

#pragma once

#include "files/path.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>

namespace kelxml::files
{

/// Call this before creating Qt's objects for a file. Qt crashes if memory runs out while it creates
/// the first `QObject` of a thread, or connects a text stream to its device. Allocating and freeing this much
/// first makes a failure there unlikely. \throw std::bad_alloc
inline void ensureMemoryForQt()
{
    constexpr int kBytes = 64 * 1024;
    QByteArray(kBytes, Qt::Uninitialized);
}

/// Must be the first base class, so that it ensures the memory before `QFile` is constructed.
struct MemoryForQt
{
    MemoryForQt() { ensureMemoryForQt(); }
};

/// A file whose path was checked and that has the memory Qt needs. Qt opens only files of this class.
class File : private MemoryForQt, public QFile
{
public:
    /// For a file that is opened by descriptor.
    File() = default;
    explicit File(const Path& path) : QFile(path.name()) {}

    /// Creates the file or empties it.
    bool openForWriting() { return open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text); }
};

} // namespace kelxml::files
