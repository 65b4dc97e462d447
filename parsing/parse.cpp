// Reads a file, scans the text, checks the free stack, removes the earlier content and lets Qt parse.

#include "parsing/parse.h"

#include "files/memory_room.h"
#include "limits/stack_room.h"
#include "lists/live_list.h"
#include "parsing/prescan.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtXml/QDomDocument>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace kelxml::parsing
{

namespace
{

/// Against siblings that are freed: `QDomDocument::setContent` leaves held top-level nodes linked to each
/// other, so they are removed one by one beforehand.
void removeContent(QDomDocument& document)
{
    for (QDomNode node = document.firstChild(); !node.isNull(); node = document.firstChild())
        document.removeChild(node);
}

/// \param content a text or a device
template <class Content>
ParseResult parseWithin(const Prescan& seen, QDomDocument& document, Content&& content)
{
    if (!seen.isWithin())
        return {ParseFailure::BeyondLimit, seen.exceeded};
    if (!limits::hasRoomToParse(seen.nesting))
        return {ParseFailure::BeyondLimit, limits::Limit::Stack};
    lists::noteReplacedContent(document);
    removeContent(document);
    ParseResult result;
    if (!document.setContent(content, &result.reason, &result.line, &result.column))
        result.failure = ParseFailure::NotWellFormed;
    return result;
}

/// Calls the system itself, because `QFile` reports the bytes before an error as if the file ended there.
/// Only a resource in the program has no descriptor. \return less than 0 after an error; `errno` says which
qint64 readSome(QFile& file, char* to, int most)
{
    const int descriptor = file.handle();
    return descriptor < 0 ? file.read(to, most)
                          : TEMP_FAILURE_RETRY(::read(descriptor, to, static_cast<std::size_t>(most)));
}

/// Adds all bytes of a file to `bytes`, or one more than `most` if it has more. \return the system's error,
/// or 0
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

ParseResult unreadable(const QString& reason)
{
    return {ParseFailure::Unreadable, limits::Limit::None, reason};
}

ParseResult parseOpened(QDomDocument& document, QFile& file)
{
    const qint64 size = file.size();
    const qint64 most = size > 0 ? limits::kMaxFileBytes : limits::kMaxUnsizedBytes;
    QByteArray bytes;
    if (const int error = size > most ? 0 : readUpToOneMoreThan(most, file, bytes))
        return unreadable(qt_error_string(error));
    if (std::max(size, qint64{bytes.size()}) > most)
        return {ParseFailure::BeyondLimit, size > 0 ? limits::Limit::FileBytes : limits::Limit::UnsizedBytes};

    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    ParseResult result = parseWithin(prescan(bytes), document, &buffer);
    if (bytes.isEmpty())
        result.failure = ParseFailure::Empty;
    return result;
}

} // namespace

ParseResult parse(QDomDocument& document, const QString& text)
{
    if (text.isEmpty())
        return {ParseFailure::Empty};
    return parseWithin(prescan(text), document, text);
}

ParseResult parseFile(QDomDocument& document, const QString& path)
{
    if (path.isEmpty())
        return unreadable(qt_error_string(ENOENT));
    files::makeSureOfMemoryForFile();
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? parseOpened(document, file) : unreadable(file.errorString());
}

ParseResult parseFile(QDomDocument& document, const std::string& path)
{
    files::makeSureOfMemoryForFile();
    QFile file;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 || !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return unreadable(qt_error_string(errno));
    return parseOpened(document, file);
}

} // namespace kelxml::parsing
