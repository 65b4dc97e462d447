// Defines `File`, the class of every file that this library lets Qt open.

#pragma once

#include "files/path.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>

namespace kelxml::files
{

/// Call this function before Qt creates the objects that it needs for a file. Qt crashes if memory runs out
/// while Qt creates the first `QObject` of a thread, or while Qt connects a text stream to a device. This
/// function allocates more memory than these two steps need, and frees this memory again, so that memory is
/// unlikely to run out in these steps.
/// \throw std::bad_alloc
inline void ensureMemoryForQt()
{
    constexpr int kBytes = 64 * 1024;
    QByteArray(kBytes, Qt::Uninitialized);
}

/// The first base class of `File`, so that `ensureMemoryForQt` runs before the constructor of `QFile`.
struct MemoryForQt
{
    MemoryForQt() { ensureMemoryForQt(); }
};

/// A `QFile` for a checked path. The constructor first calls `ensureMemoryForQt`. All files that the library
/// lets Qt open are of this class.
class File : private MemoryForQt, public QFile
{
public:
    /// Creates an object without a path. To open a file, pass a file descriptor to `open`.
    File() = default;
    explicit File(const Path& path) : QFile(path.name()) {}

    /// Opens the file for writing. Creates the file if it does not exist, and truncates it if it does.
    bool openForWriting() { return open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text); }
};

} // namespace kelxml::files
