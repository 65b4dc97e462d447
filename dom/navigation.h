// Walking and asking: what the four node-like classes have in common.

#pragma once

#include "dom/inside.h"

namespace kelxml
{

HRESULT parentNode(const Place& self, IXMLDOMNode** parent);
HRESULT firstChild(const Place& self, IXMLDOMNode** child);
HRESULT hasChildNodes(const Place& self, VARIANT_BOOL* hasChildren);
HRESULT childNodes(const Place& self, IXMLDOMNodeList** children);
HRESULT attributes(const Place& self, IXMLDOMNamedNodeMap** attributes);
HRESULT elementsByTagName(const Place& self, const wchar_t* name, IXMLDOMNodeList** list);
HRESULT reportType(DOMNodeType type, DOMNodeType* out);

/// The owner document of a node object: the one it has, or the one that Qt names, kept in `owner`.
HRESULT ownerDocument(const Place& self, kel::ComPtr<CMorvXMLDOMDocument>& owner, IXMLDOMDocument** document);

} // namespace kelxml
