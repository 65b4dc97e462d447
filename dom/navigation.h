// Finds the parent, children, attributes, descendants and owner document of a node. Shared by the four node
// classes: element, attribute, document and generic node.

#pragma once

#include "dom/wrapper_access.h"

namespace kelxml::dom
{

HRESULT parentNode(const NodeRef& self, IXMLDOMNode** parent);
HRESULT firstChild(const NodeRef& self, IXMLDOMNode** child);
HRESULT hasChildNodes(const NodeRef& self, VARIANT_BOOL* hasChildren);
HRESULT childNodes(const NodeRef& self, IXMLDOMNodeList** children);
HRESULT attributes(const NodeRef& self, IXMLDOMNamedNodeMap** attributes);
HRESULT elementsByTagName(const NodeRef& self, const wchar_t* name, IXMLDOMNodeList** list);
HRESULT storeType(DOMNodeType type, DOMNodeType* out);

/// Stores the document object of `self` in `document`.
/// \param owner the document object that the node object has cached. If `owner` is null, this function asks
///        Qt for the owner document of `self` and stores a new object for that document in `owner`
HRESULT ownerDocument(const NodeRef& self, kel::ComPtr<CMorvXMLDOMDocument>& owner,
                      IXMLDOMDocument** document);

} // namespace kelxml::dom
