// Each object gets an owner document of its own and carries the document handle of the object that made it.

#include "dom/wrap.h"

namespace kelxml
{

kel::ComPtr<CMorvXMLDOMDocument> makeOwnerDocument(const QDomDocument& document)
{
    return kel::ComPtr<CMorvXMLDOMDocument>(new CMorvXMLDOMDocument(document));
}

void wrapAs(DOMNodeType type, const QDomNode& node, const DocumentRef& document, IXMLDOMNode** out)
{
    switch (type) {
    case NODE_ELEMENT:
        return handOut<CMorvXMLDOMElement>(node, document, out);
    case NODE_ATTRIBUTE:
        return handOut<CMorvXMLDOMAttribute>(node, document, out);
    default:
        return handOut<CMorvXMLDOMNode>(node, document, out);
    }
}

void wrapForReturn(const QDomNode& node, const DocumentRef& document, IXMLDOMNode** out)
{
    wrapAs(static_cast<DOMNodeType>(node.nodeType()), node, document, out);
}

} // namespace kelxml
