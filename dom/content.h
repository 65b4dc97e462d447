// Names and values: what the node-like classes have in common.

#pragma once

#include "dom/inside.h"

namespace kelxml
{

HRESULT nodeName(const NodeRef& self, BSTR* name);
HRESULT nodeValue(const QString& value, VARIANT* out);
HRESULT setNodeValue(const NodeRef& self, const wchar_t* text);

} // namespace kelxml
