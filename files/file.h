// The class for every file that Qt opens.

#pragma once

#include "files/path.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>

namespace kelxml::files
{

/// Call this before Qt creates its objects for a file. Qt crashes if memory runs out while it creates the
/// first `QObject` of a thread or connects a text stream to its device. So this function allocates more
/// memory than Qt needs for that and frees it again. Qt is then unlikely to run out.
/// \throw std::bad_alloc
inline void ensureMemoryForQt()
{
    constexpr int kBytes = 64 * 1024;
    QByteArray(kBytes, Qt::Uninitialized);
}

/// The first base class of `File`: its constructor runs before the constructor of `QFile`.
struct MemoryForQt
{
    MemoryForQt() { ensureMemoryForQt(); }
};

/// A `QFile` for a checked path. Its constructor first ensures that Qt has enough memory. The library passes
/// no other file to Qt.
class File : private MemoryForQt, public QFile
{
public:
    /// Creates a file without a path. Open it with a descriptor.
    File() = default;
    explicit File(const Path& path) : QFile(path.name()) {}

    /// Creates the file, or truncates an existing one.
    bool openForWriting() { return open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text); }
};

} // namespace kelxml::files
