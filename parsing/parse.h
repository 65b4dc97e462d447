// Calls Qt's parser. No other code may call `QDomDocument::setContent`.

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

/// Replaces the content of `document`. Refuses a text that is empty, exceeds a limit or nests too deep for
/// the calling thread's stack. The document then keeps its earlier content. If the text is not well-formed,
/// the document gets the nodes that Qt read before the error. \throw std::bad_alloc
ParseResult parseText(QDomDocument& document, const QString& text);

/// Replaces the content of `document` with that of a file, by the same rules. The file is read only once, so
/// that Qt parses exactly the bytes that were checked. A file that cannot be read to its end is refused. An
/// empty file clears the document.
ParseResult parseFile(QDomDocument& document, const files::Path& path);

/// Parses a file in the same way. \param path the bytes that the system gets, without conversion
ParseResult parseFile(QDomDocument& document, const std::string& path);

} // namespace kelxml::parsing
