// What the VARIANTs that come in mean. They are read, never changed or freed, and VT_BYREF is not followed.

#pragma once

#include "KelComWrapper/variant.h"

#include <QtCore/QString>
#include <optional>

namespace kelxml::text
{

/// A file's path: a `VT_BSTR`, and nothing else, as `pathFromWide` reads it.
std::optional<QString> readPath(const VARIANT& value);

/// A 32-bit integer of a `VT_I2`, `VT_I4` or `VT_INT`; 0 for anything else.
int readInteger(const VARIANT& value);

} // namespace kelxml::text
