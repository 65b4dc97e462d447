// Reads a whole file into memory.

#pragma once

#include "files/path.h"
#include "limits/limits.h"

#include <QtCore/QByteArray>

namespace kelxml::files
{

/// The bytes of a file, or the reason why the file could not be read.
struct Contents
{
    QByteArray bytes;
    QString error; ///< the reason why the file could not be opened or read; null if there was no error
    /// The limit that the file exceeds: `FileBytes` or `UnsizedBytes`. `None` if the file exceeds no limit.
    limits::Limit exceeded = limits::Limit::None;
};

/// Reads a file or a device to its end, unless the file or device exceeds a limit. \throw std::bad_alloc
Contents read(const Path& path);

/// Does the same as the other `read`, for a path that is a sequence of bytes.
/// \param path passed to the system unchanged, without conversion by Qt
/// \throw std::bad_alloc
Contents read(const std::string& path);

} // namespace kelxml::files
