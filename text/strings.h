// Converts between QString and the UCS-4 texts of the interfaces: wide strings and BSTRs.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/variant.h"

#include <QtCore/QString>

namespace kelxml::text
{

/// Whether `unit` is a character: not a surrogate and not above U+10FFFF.
inline bool isCharacter(char32_t unit)
{
    return !QChar::isSurrogate(unit) && unit <= QChar::LastValidCodePoint;
}

/// Converts the zero-terminated `text` as `QString::fromUcs4` does. For a null pointer, returns a null
/// string.
QString fromWide(const wchar_t* text);

/// Converts `text` as `fromWide` does, but writes U+FFFD for each `wchar_t` that is not a character. A
/// `wchar_t` above U+10FFFF is not a character, and neither is an unpaired surrogate. Qt's encoders would
/// lose all text after such a `wchar_t`.
/// \param reused a string that is no longer needed; its memory is reused for the returned string
QString charactersFromWide(const wchar_t* text, QString&& reused = {});

/// Returns a new BSTR with the code points of `text` up to the first U+0000. The caller frees the BSTR.
/// `text` may have any length. If `text` has fewer than 1024 code points, only the BSTR itself is allocated.
BSTR toBstr(const QString& text);

/// Stores a new BSTR of `text` in `*value`. The earlier content of `*value` is neither read nor freed.
void putString(const QString& text, VARIANT* value);

} // namespace kelxml::text
