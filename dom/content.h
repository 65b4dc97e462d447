// Reads names and values, and sets values and attributes. Shared by the four node classes: element,
// attribute, document and generic node.

#pragma once

#include "dom/wrapper_access.h"

namespace kelxml::dom
{

HRESULT nodeName(const NodeRef& self, BSTR* name);
HRESULT storeText(const QString& text, BSTR* out);
HRESULT storeValue(const QString& value, VARIANT* out);
HRESULT setNodeValue(const NodeRef& self, const wchar_t* text);

/// Sets the attribute `name` of `element` if `value` is a BSTR, an integer of 16 to 64 bits, a floating-point
/// number or a date. Does nothing if `value` is of any other type.
HRESULT setAttribute(const NodeRef& element, const wchar_t* name, const VARIANT& value);

} // namespace kelxml::dom
