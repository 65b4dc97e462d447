// Names, values and attributes: what the node-like classes have in common.

#pragma once

#include "dom/wrapper_access.h"

namespace kelxml::dom
{

HRESULT nodeName(const NodeRef& self, BSTR* name);
HRESULT giveText(const QString& text, BSTR* out);
HRESULT giveValue(const QString& value, VARIANT* out);
HRESULT setNodeValue(const NodeRef& self, const wchar_t* text);

/// Sets an attribute through the overload of Qt's that the value's type selects; another type sets nothing.
HRESULT setAttribute(const NodeRef& element, const wchar_t* name, const VARIANT& value);

} // namespace kelxml::dom
