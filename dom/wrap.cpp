// Each object gets its own owner document and keeps the document handle of the object that created it.

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
        return handOut<CMorvXMLDOMElement>(std::move(node), document, out);
    case NODE_ATTRIBUTE:
        return handOut<CMorvXMLDOMAttribute>(std::move(node), document, out);
    default:
        return handOut<CMorvXMLDOMNode>(std::move(node), document, out);
    }
}

void wrapForReturn(MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out)
{
    const auto type = static_cast<DOMNodeType>(node.nodeType());
    wrapAs(type, std::move(node), document, out);
}

} // namespace kelxml::dom
