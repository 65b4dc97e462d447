// What the VARIANTs that come in mean. They are read, never changed or freed, and VT_BYREF is not followed.

#pragma once

#include "KelComWrapper/variant.h"

#include <QtXml/QDomElement>
#include <optional>

namespace kelxml
{

/// A file path: a `VT_BSTR`, and nothing else.
std::optional<QString> readPath(const VARIANT& value);

/// A 32-bit integer of a `VT_I2`, `VT_I4` or `VT_INT`; 0 for anything else.
int readInteger(const VARIANT& value);

/// Sets an attribute through the overload that the value's type selects; an unknown type sets nothing.
void setAttributeValue(QDomElement& element, const QString& name, const VARIANT& value);

} // namespace kelxml
