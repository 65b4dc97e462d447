// Converts and checks the texts, names and numbers that callers pass or read.

#pragma once

#include "KelXmlLib/kel/text.h"

#include <QtCore/QString>

#include <string>

namespace kel::detail
{

/// A converted text, or the reason why the text is invalid.
struct Converted
{
    QString text;
    const char* fault = nullptr; ///< the reason; null if the text is valid
};

/// Converts a text without changing any character. Refuses three kinds of text: invalid UTF-8, a text with a
/// `wchar_t` that is not a Unicode character, and a text with a null character.
Converted convert(TextView text);

/// Does what `convert` does, but throws instead of returning the reason. \throw Error if the text is invalid
QString toText(TextView text);

/// Converts the text of a node or an attribute. \throw Error if `toText` would throw, or if the text contains
/// characters that XML does not allow
QString toContent(TextView text);

/// Does what `toContent` does, but accepts more wide texts: combines each surrogate pair into one character,
/// and replaces a lone surrogate or a `wchar_t` above U+10FFFF with U+FFFD. `IKelXmlFiler` combines and
/// replaces in the same way.
QString toCharacters(TextView text);

/// Converts a name. \throw Error if `toText` would throw, or if Qt's parser would not read the text as a name
QString toName(TextView name);

/// Escapes control characters in a path or a name, so that a message stays on one line.
std::string inOneLine(const std::string& text);

/// Parses a text as the type of the variable that `target` points to, and stores the value in this variable.
/// \return whether the text is valid for that type; if not, the variable is unchanged
bool assign(const QString& text, Target target);

} // namespace kel::detail
