// Reads a whole file into memory.

#pragma once

#include "files/path.h"
#include "limits/limits.h"

#include <QtCore/QByteArray>

namespace kelxml::files
{

/// The bytes of a file, or the reason why it could not be read.
struct Contents
{
    QByteArray bytes;
    QString error;                                ///< the system's message; null if the file was read
    limits::Limit exceeded = limits::Limit::None; ///< `FileBytes`, `UnsizedBytes` or `None`
};

/// Reads a file or a device to its end. \throw std::bad_alloc
Contents read(const Path& path);

/// Reads a file or a device to its end. \param path the bytes that the system gets, without conversion
/// \throw std::bad_alloc
Contents read(const std::string& path);

} // namespace kelxml::files
