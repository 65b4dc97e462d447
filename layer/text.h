// Texts, names and numbers across the layer's boundary.

#pragma once

#include "KelXmlLib/kel/text.h"

#include <QtCore/QString>

namespace kel::detail
{

/// Nothing of a text is changed on the way. \throw Error for invalid UTF-8, for wide units that are not
/// characters, and for zeros
QString toText(TextView text);

/// As `toText`. \throw Error also for characters that XML does not allow: no parser would load them again
QString toContent(TextView text);

/// As `toText`, but with U+FFFD for wide units that are not characters: what the filer writes.
QString toCharacters(TextView text);

/// As `toText`. \throw Error also for what Qt's parser would not read back as a name
QString toName(TextView name);

/// \return whether the text is a value of the target's type; if not, the target is not changed
bool assign(const QString& text, Target target);

} // namespace kel::detail
