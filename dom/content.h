// Names, values and attributes, shared by the node-like classes.

#pragma once

#include "dom/wrapper_access.h"

namespace kelxml::dom
{

HRESULT nodeName(const NodeRef& self, BSTR* name);
HRESULT giveText(const QString& text, BSTR* out);
HRESULT giveValue(const QString& value, VARIANT* out);
HRESULT setNodeValue(const NodeRef& self, const wchar_t* text);

/// Sets an attribute through the Qt overload for the value's type. Other types set nothing.
HRESULT setAttribute(const NodeRef& element, const wchar_t* name, const VARIANT& value);

} // namespace kelxml::dom
