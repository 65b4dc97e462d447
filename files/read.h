// Reading a whole file.

#pragma once

#include "files/path.h"
#include "limits/limits.h"

#include <QtCore/QByteArray>

namespace kelxml::files
{

/// The bytes of a file, or why it could not be read.
struct Contents
{
    QByteArray bytes;
    QString error;                                ///< the system's, null if the file was read
    limits::Limit exceeded = limits::Limit::None; ///< `FileBytes` or `UnsizedBytes`
};

/// Reads a file or a device to its end. \throw std::bad_alloc
Contents read(const Path& path);

/// As above. \param path the system's bytes, whatever the encoding of file names is
Contents read(const std::string& path);

} // namespace kelxml::files
