// Converts and checks the texts, names and numbers that callers pass or read.

#pragma once

#include "KelXmlLib/kel/text.h"

#include <QtCore/QString>

#include <string>

namespace kel::detail
{

/// A converted text, or the reason why the argument is invalid.
struct Converted
{
    QString text;
    const char* fault = nullptr; ///< the reason; null if the text is valid
};

/// Converts a text without changing any character. Refuses invalid UTF-8, wide units that are not characters,
/// and null characters.
Converted convert(TextView text);

/// Does what `convert` does. \throw Error if the text is invalid
QString toText(TextView text);

/// Converts a text for a node or an attribute, like `toText`. \throw Error also if it contains characters
/// that XML does not allow, because no parser would read them
QString toContent(TextView text);

/// Does what `toContent` does, but replaces wide units that are not characters by U+FFFD, as the filer does.
QString toCharacters(TextView text);

/// Does what `toText` does. \throw Error also if Qt's parser would not read the text as a name
QString toName(TextView name);

/// Escapes control characters in a path or a name, so that a message stays on one line.
std::string inOneLine(const std::string& text);

/// Reads a text as the type of the target, and stores the result there.
/// \return whether the text is valid for that type; if not, the target is unchanged
bool assign(const QString& text, Target target);

} // namespace kel::detail
