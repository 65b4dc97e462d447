// The one way to Qt's parser: `QDomDocument::setContent` is called nowhere else.

#pragma once

#include "files/path.h"
#include "limits/limits.h"

#include <QtCore/QString>

#include <string>

class QDomDocument;

namespace kelxml::parsing
{

enum class ParseFailure { None, Unreadable, Empty, BeyondLimit, NotWellFormed };

struct ParseResult
{
    ParseFailure failure = ParseFailure::None;
    limits::Limit limit = limits::Limit::None; ///< for `BeyondLimit`
    QString reason = {};                       ///< for `Unreadable` the system's, for `NotWellFormed` Qt's
    int line = 0;                              ///< for `NotWellFormed`, from 1
    int column = 0;

    explicit operator bool() const { return failure == ParseFailure::None; }
};

/// Replaces the content of `document` by the text's. A text that is empty, exceeds a limit, or nests too deep
/// for the calling thread's stack is refused before Qt sees it, and the earlier content stays. If the text is
/// not well-formed, the document holds what Qt read up to the fault. \throw std::bad_alloc
ParseResult parseText(QDomDocument& document, const QString& text);

/// As above, from a file. The bytes that are checked are the bytes that are parsed, even if the file changes
/// meanwhile or is a pipe. A file that cannot be read to its end is refused like one that exceeds a limit; an
/// empty one is not well-formed to Qt.
ParseResult parseFile(QDomDocument& document, const files::Path& path);

/// As above. \param path the system's bytes, whatever the encoding of file names is
ParseResult parseFile(QDomDocument& document, const std::string& path);

} // namespace kelxml::parsing
