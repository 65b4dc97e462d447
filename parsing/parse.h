// Calls Qt's parser. Nothing else may call `QDomDocument::setContent`.

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
    QString reason = {}; ///< from the system if `Unreadable`, from Qt if `NotWellFormed`
    int line = 0;        ///< for `NotWellFormed`, from 1
    int column = 0;

    explicit operator bool() const { return failure == ParseFailure::None; }
};

/// Replaces the content of `document`. A text that is empty, exceeds a limit, or nests too deep for the
/// calling thread's stack is refused before Qt sees it; the earlier content stays. If the text is not
/// well-formed, the document gets what Qt read up to the error. \throw std::bad_alloc
ParseResult parseText(QDomDocument& document, const QString& text);

/// The same for a file. Reads it only once, so that exactly the checked bytes are parsed. A
/// file that cannot be read to its end is refused like one that exceeds a limit. An empty file clears the
/// document.
ParseResult parseFile(QDomDocument& document, const files::Path& path);

/// The same. \param path the system's bytes, whatever the encoding of file names is
ParseResult parseFile(QDomDocument& document, const std::string& path);

} // namespace kelxml::parsing
