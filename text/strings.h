// Text across the boundary: UCS-4 wide strings and BSTRs outside, QString inside.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/variant.h"

#include <QtCore/QString>

namespace kelxml::text
{

/// The text up to its first zero unit, as `QString::fromUcs4` reads it; a null pointer gives a null string.
QString fromWide(const wchar_t* text);

/// The same with U+FFFD in the place of each unit that is no character: above U+10FFFF, or half a surrogate
/// pair without the other half behind or before it. Qt's encoders do not get over such a unit.
/// \param earlier a text that is not needed any more, whose memory is used again
QString charactersFromWide(const wchar_t* text, QString&& earlier = {});

/// A new BSTR of the text's code points up to the first U+0000, of any length; the receiver frees it.
/// Text of fewer than 1024 code points allocates nothing else.
BSTR toBstr(const QString& text);

/// Stores a new BSTR of `text` in the caller's VARIANT, whose earlier content is neither read nor freed.
void putString(const QString& text, VARIANT* value);

} // namespace kelxml::text
