// Converts texts, names and numbers at the layer's interface.

#pragma once

#include "KelXmlLib/kel/text.h"

#include <QtCore/QString>

namespace kel::detail
{

/// Converts a text without changing it. \throw Error for invalid UTF-8, for wide units that are not
/// characters, and for zeros
QString toText(TextView text);

/// Like `toText`. \throw Error also for characters that XML does not allow, because no parser would read them
QString toContent(TextView text);

/// Like `toText`, but replaces wide units that are not characters by U+FFFD, as the filer does.
QString toCharacters(TextView text);

/// Like `toText`. \throw Error also for a text that Qt's parser would not read as a name
QString toName(TextView name);

/// \return whether the text is a value of the target's type; if not, the target is unchanged
bool assign(const QString& text, Target target);

} // namespace kel::detail
