// Changing the tree: what the four node-like classes have in common.

#pragma once

#include "dom/wrapper_access.h"

namespace kelxml::dom
{

HRESULT appendChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);
HRESULT removeChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);

/// The element's own: of an element child, the result wraps what Qt took out, which is nothing when it was
/// no child of this element.
HRESULT removeChildOfElement(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);

} // namespace kelxml::dom
