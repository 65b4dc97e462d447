// Returns related nodes, lists and maps of a node. Shared by the four node-like classes.

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

/// Returns the owner document of a node object. If `owner` is null, asks Qt for the document and caches it in
/// `owner`.
HRESULT ownerDocument(const NodeRef& self, kel::ComPtr<CMorvXMLDOMDocument>& owner,
                      IXMLDOMDocument** document);

} // namespace kelxml::dom
