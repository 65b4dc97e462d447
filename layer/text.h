// Converts texts, names and numbers at the layer's interface.

#pragma once

#include "KelXmlLib/kel/text.h"

#include <QtCore/QString>

#include <string>

namespace kel::detail
{

/// A converted text, or what was wrong with the argument.
struct Converted
{
    QString text;
    const char* fault = nullptr;
};

/// Converts a text without changing it. Faults are invalid UTF-8, wide units that are not characters, and
/// zeros.
Converted convert(TextView text);

/// Like `convert`. \throw Error for a fault
QString toText(TextView text);

/// Like `toText`. \throw Error also for characters that XML does not allow, because no parser would read them
QString toContent(TextView text);

/// Like `toContent`, but replaces wide units that are not characters by U+FFFD, as the filer does.
QString toCharacters(TextView text);

/// Like `toText`. \throw Error also for a text that Qt's parser would not read as a name
QString toName(TextView name);

/// Escapes control characters in a path or a name, so that a message stays on one line.
std::string inOneLine(const std::string& text);

/// \return whether the text is a value of the target's type; if not, the target is unchanged
bool assign(const QString& text, Target target);

} // namespace kel::detail
