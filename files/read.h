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
    /// The limit that the file exceeds: `FileBytes` or `UnsizedBytes`; or else `None`.
    limits::Limit exceeded = limits::Limit::None;
};

/// Reads a file or a device to its end, unless the file or device exceeds a limit. \throw std::bad_alloc
Contents read(const Path& path);

/// Reads a file or a device to its end, unless the file or device exceeds a limit.
/// \param path is passed to the system byte by byte, without conversion
/// \throw std::bad_alloc
Contents read(const std::string& path);

} // namespace kelxml::files
