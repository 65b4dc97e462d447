// Functions that return a node or a map call Qt, and create a new object for the node or map that Qt returns.
// Functions that return a list create a live list, which reads its nodes from the tree.

#include "dom/navigation.h"

#include "dom/wrap.h"
#include "lists/live_list.h"
#include "text/strings.h"
#include "trees/owners.h"

namespace kelxml::dom
{

namespace
{

HRESULT storeNode(MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out)
{
    if (!out || node.isNull())
        return S_FALSE;
    wrapForReturn(std::move(node), document, out);
    return S_OK;
}

HRESULT storeList(lists::ListOrigin&& origin, const DocumentRef& document, IXMLDOMNodeList** list)
{
    if (!list)
        return S_FALSE;
    createObject<CMorvXMLDOMNodeList>(std::move(origin), document, list);
    return S_OK;
}

} // namespace

HRESULT parentNode(const NodeRef& self, IXMLDOMNode** parent)
{
    return storeNode(self.node.parentNode(), self.document, parent);
}

HRESULT firstChild(const NodeRef& self, IXMLDOMNode** child)
{
    return storeNode(self.node.firstChild(), self.document, child);
}

HRESULT hasChildNodes(const NodeRef& self, VARIANT_BOOL* hasChildren)
{
    if (!hasChildren)
        return S_FALSE;
    *hasChildren = self.node.hasChildNodes() ? 1 : 0; // not VARIANT_TRUE, which is -1
    return S_OK;
}

HRESULT childNodes(const NodeRef& self, IXMLDOMNodeList** children)
{
    return storeList({QDomNode(self.node), QString()}, self.document, children);
}

HRESULT attributes(const NodeRef& self, IXMLDOMNamedNodeMap** attributes)
{
    if (!attributes)
        return S_FALSE;
    createObject<CMorvXMLDOMNamedNodeMap>(self.node, self.document, attributes);
    return S_OK;
}

HRESULT elementsByTagName(const NodeRef& self, const wchar_t* name, IXMLDOMNodeList** list)
{
    return storeList({QDomNode(self.node), text::fromWide(name)}, self.document, list);
}

HRESULT storeType(DOMNodeType type, DOMNodeType* out)
{
    if (!out)
        return S_FALSE;
    *out = type;
    return S_OK;
}

HRESULT ownerDocument(const NodeRef& self, kel::ComPtr<CMorvXMLDOMDocument>& owner,
                      IXMLDOMDocument** document)
{
    if (!document)
        return S_FALSE;
    if (!owner) {
        const QDomDocument found = trees::ownerDocument(self);
        if (!found.isNull())
            owner = makeOwnerDocument(found);
    }
    *document = kel::ComPtr<CMorvXMLDOMDocument>(owner).detach();
    return owner ? S_OK : S_FALSE;
}

} // namespace kelxml::dom
