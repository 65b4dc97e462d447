// Converts between QString and the UCS-4 texts of the interfaces: wide strings and BSTRs.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/variant.h"

#include <QtCore/QString>

namespace kelxml::text
{

/// Converts the text up to its first zero, as `QString::fromUcs4` does. A null pointer gives a null string.
QString fromWide(const wchar_t* text);

/// Like `fromWide`, but writes U+FFFD for each unit that is not a character: a unit above U+10FFFF, or half a
/// surrogate pair without its other half. Qt's encoders would lose all text after such a unit.
/// \param reused a text that is no longer needed; its memory is reused for the result
QString charactersFromWide(const wchar_t* text, QString&& reused = {});

/// Returns a new BSTR with the text's code points up to the first U+0000. The caller frees it. The text may
/// have any length. If it has fewer than 1024 code points, the BSTR is the only memory allocated.
BSTR toBstr(const QString& text);

/// Stores a new BSTR of `text` in the caller's VARIANT, whose earlier content is neither read nor freed.
void putString(const QString& text, VARIANT* value);

} // namespace kelxml::text
