// Calls the system's `read`, because `QFile` does not distinguish a failed read from the end of the file.

#include "files/read.h"

#include "files/file.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace kelxml::files
{

namespace
{

/// Reads up to `most` bytes. Files without a descriptor are resources compiled into the program, and only
/// `QFile` can read such resources. \return the number of bytes read; a negative number after an error, and
/// `errno` then contains the reason
qint64 readSome(QFile& file, char* to, int most)
{
    const int descriptor = file.handle();
    return descriptor < 0 ? file.read(to, most)
                          : TEMP_FAILURE_RETRY(::read(descriptor, to, static_cast<std::size_t>(most)));
}

/// Appends the bytes of a file to `bytes`. Stops when `bytes` contains `most` + 1 bytes: the caller then
/// knows that the file has more than `most` bytes. \return the `errno` of a failed read, or 0
int readUpToOneMoreThan(qint64 most, QFile& file, QByteArray& bytes)
{
    constexpr qint64 kPiece = qint64{64} * 1024;
    for (qint64 wanted = std::max(file.size(), kPiece);; wanted = kPiece) {
        QByteArray piece(static_cast<int>(std::min(wanted, most + 1 - bytes.size())), Qt::Uninitialized);
        const qint64 count = readSome(file, piece.data(), piece.size());
        if (count <= 0)
            return count < 0 ? errno : 0;
        piece.truncate(static_cast<int>(count));
        bytes += piece;
    }
}

Contents unreadable(const QString& error)
{
    return {{}, error};
}

Contents readOpened(QFile& file)
{
    const qint64 size = file.size();
    const qint64 most = size > 0 ? limits::kMaxFileBytes : limits::kMaxUnsizedBytes;
    Contents contents;
    if (const int error = size > most ? 0 : readUpToOneMoreThan(most, file, contents.bytes))
        return unreadable(qt_error_string(error));
    if (std::max(size, qint64{contents.bytes.size()}) > most)
        contents.exceeded = size > 0 ? limits::Limit::FileBytes : limits::Limit::UnsizedBytes;
    return contents;
}

} // namespace

Contents read(const Path& path)
{
    File file(path);
    return file.open(QIODevice::ReadOnly) ? readOpened(file) : unreadable(file.errorString());
}

Contents read(const std::string& path)
{
    if (const char* const refusal = refusalOf(path))
        return unreadable(QString::fromLatin1(refusal));
    File file;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 || !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return unreadable(qt_error_string(errno));
    return readOpened(file);
}

} // namespace kelxml::files
