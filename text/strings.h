// Converts text at the interface: UCS-4 wide strings and BSTRs outside, QString inside.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/variant.h"

#include <QtCore/QString>

namespace kelxml::text
{

/// The text up to its first zero unit, as `QString::fromUcs4` reads it; a null pointer becomes a null string.
QString fromWide(const wchar_t* text);

/// The same, but replaces each unit that is not a character by U+FFFD: one above U+10FFFF, or half a
/// surrogate pair without its other half. Qt's encoders lose all text after such a unit.
/// \param reused a text that is no longer needed, whose memory is reused
QString charactersFromWide(const wchar_t* text, QString&& reused = {});

/// A new BSTR of the text's code points up to the first U+0000, of any length; the receiver frees it.
/// Text of fewer than 1024 code points allocates nothing else.
BSTR toBstr(const QString& text);

/// Stores a new BSTR of `text` in the caller's VARIANT. Neither reads nor frees its earlier content.
void putString(const QString& text, VARIANT* value);

} // namespace kelxml::text
