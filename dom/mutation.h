// Changes to the tree, shared by the four node-like classes.

#pragma once

#include "dom/wrapper_access.h"

namespace kelxml::dom
{

HRESULT appendChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);
HRESULT removeChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);

/// `removeChild` of an element. For an element child, the result wraps the node that Qt removed: null unless
/// it was a child of this element.
HRESULT removeChildOfElement(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result);

} // namespace kelxml::dom
