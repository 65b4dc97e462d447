// Reading of nodes.

#include "nodes.h"

#include <algorithm>

namespace host
{

DOMNodeType typeOf(IXMLDOMNode& node)
{
    DOMNodeType type = NODE_INVALID;
    kel::check(node.get_nodeType(&type), "asking for a node's type");
    return type;
}

std::wstring nameOf(IXMLDOMNode& node)
{
    return kel::textOf(node, &IXMLDOMNode::get_nodeName);
}

std::wstring valueOf(IXMLDOMNode& node)
{
    kel::Variant value;
    kel::check(node.get_nodeValue(value.put()), "asking for a node's value");
    return value.type() == VT_BSTR ? std::wstring(value.text()) : std::wstring();
}

std::vector<AttributeText> attributesOf(const Library& library, IXMLDOMNode& node)
{
    std::vector<AttributeText> attributes;
    for (const Node& item : kel::attributesOf(node)) {
        kel::Variant value;
        kel::check(library.asAttribute(*item)->get_value(value.put()), "asking for an attribute's value");
        attributes.push_back({nameOf(*item), std::wstring(value.text())});
    }
    std::sort(attributes.begin(), attributes.end(),
              [](const AttributeText& left, const AttributeText& right) { return left.name < right.name; });
    return attributes;
}

std::vector<Node> elementsNamed(IXMLDOMDocument& document, const std::wstring& tagName)
{
    const auto list = kel::elementsNamed(document, tagName.c_str());
    return {list.begin(), list.end()};
}

} // namespace host
