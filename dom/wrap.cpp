// When a method returns a new object for a node or a collection, the new object gets a document object of its
// own. The new object and its document object refer to the Qt document of the object whose method was called.

#include "dom/wrap.h"

namespace kelxml::dom
{

kel::ComPtr<CMorvXMLDOMDocument> makeOwnerDocument(const QDomDocument& document)
{
    return kel::ComPtr<CMorvXMLDOMDocument>(new CMorvXMLDOMDocument(document));
}

void wrapAs(DOMNodeType type, MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out)
{
    switch (type) {
    case NODE_ELEMENT:
        return createObject<CMorvXMLDOMElement>(std::move(node), document, out);
    case NODE_ATTRIBUTE:
        return createObject<CMorvXMLDOMAttribute>(std::move(node), document, out);
    default:
        return createObject<CMorvXMLDOMNode>(std::move(node), document, out);
    }
}

void wrapForReturn(MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out)
{
    const auto type = static_cast<DOMNodeType>(node.nodeType());
    wrapAs(type, std::move(node), document, out);
}

} // namespace kelxml::dom
