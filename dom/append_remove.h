// Appends and removes children. Shared by the four node-like classes.

#pragma once

#include "dom/wrapper_access.h"

namespace kelxml::dom
{

HRESULT appendChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);
HRESULT removeChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);

/// `removeChild` for the element class. If `child` is an element, `result` gets an object for the node that
/// Qt removed. Qt removes none if `child` is not a child of this element; the object then has no Qt node.
HRESULT removeChildOfElement(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);

} // namespace kelxml::dom
