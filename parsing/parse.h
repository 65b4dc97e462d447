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
    limits::Limit limit = limits::Limit::None; ///< the exceeded limit if `failure` is `BeyondLimit`
    /// Qt's message if `failure` is `NotWellFormed`; the reason for the failure if `failure` is `Unreadable`.
    QString reason = {};
    int line = 0; ///< where Qt found the error if `failure` is `NotWellFormed`; the first line is 1
    int column = 0;

    explicit operator bool() const { return failure == ParseFailure::None; }
};

/// Replaces the content of `document` with the parsed `text`. Refuses a text that is empty, exceeds a limit
/// or nests too deep for the calling thread's stack; the document then keeps its earlier content. If the text
/// is not well-formed, the document gets the nodes that Qt read before the error. \throw std::bad_alloc
ParseResult parseText(QDomDocument& document, const QString& text);

/// Replaces the content of `document` with the parsed content of a file. The file is read only once, so that
/// Qt parses exactly the bytes that were checked.
/// - Refuses a file that cannot be read to its end, exceeds a limit or nests too deep for the calling
///   thread's stack; the document then keeps its earlier content.
/// - If the file is empty, the document becomes empty, and the result is `Empty`.
/// - If the file is not well-formed, the document gets the nodes that Qt read before the error.
///
/// \throw std::bad_alloc
ParseResult parseFile(QDomDocument& document, const files::Path& path);

/// Does the same as the other `parseFile`, for a path that is a sequence of bytes.
/// \param path passed to the system unchanged, without conversion by Qt
ParseResult parseFile(QDomDocument& document, const std::string& path);

} // namespace kelxml::parsing
