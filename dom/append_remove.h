// Appends and removes children. Shared by the four node classes: element, attribute, document and generic
// node.

#pragma once

#include "dom/wrapper_access.h"

namespace kelxml::dom
{

HRESULT appendChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);
HRESULT removeChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);

/// Implements `IXMLDOMElement::removeChild`. If `child` is an element, `result` gets an object for the node
/// that Qt removed. If `child` is an element but not a child of `self`, Qt removes nothing, and `result` gets
/// an object without a Qt node. If `child` is not an element, does the same as `removeChild`.
HRESULT removeChildOfElement(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);

} // namespace kelxml::dom
