// Reading of nodes.

#include "nodes.h"

#include <algorithm>

namespace host
{
namespace
{

std::vector<Node> allOf(IXMLDOMNodeList& list)
{
    std::vector<Node> nodes;
    for (Node node; list.nextNode(node.put()) == S_OK;)
        nodes.push_back(std::move(node));
    return nodes;
}

} // namespace

DOMNodeType typeOf(IXMLDOMNode& node)
{
    DOMNodeType type = NODE_INVALID;
    require(node.get_nodeType(&type), "asking for a node's type");
    return type;
}

std::wstring nameOf(IXMLDOMNode& node)
{
    kel::Bstr name;
    require(node.get_nodeName(name.put()), "asking for a node's name");
    return {name.c_str(), name.length()};
}

std::wstring valueOf(IXMLDOMNode& node)
{
    Value value;
    require(node.get_nodeValue(value.put()), "asking for a node's value");
    return value.text();
}

std::vector<AttributeText> attributesOf(const Library& library, IXMLDOMNode& node)
{
    kel::ComPtr<IXMLDOMNamedNodeMap> map;
    require(node.get_attributes(map.put()), "asking for attributes");
    LONG length = 0;
    require(map->get_length(&length), "counting attributes");
    std::vector<AttributeText> attributes;
    for (LONG index = 0; index < length; ++index) {
        Node item;
        require(map->get_item(index, item.put()), "asking for an attribute");
        const auto attribute = item ? library.asAttribute(*item) : nullptr;
        if (!attribute)
            continue;
        Value value;
        require(attribute->get_value(value.put()), "asking for an attribute's value");
        attributes.push_back({nameOf(*attribute), value.text()});
    }
    std::sort(attributes.begin(), attributes.end(),
              [](const AttributeText& left, const AttributeText& right) { return left.name < right.name; });
    return attributes;
}

std::vector<Node> childrenOf(IXMLDOMNode& node)
{
    kel::ComPtr<IXMLDOMNodeList> list;
    require(node.get_childNodes(list.put()), "asking for children");
    return allOf(*list);
}

std::vector<Node> elementsNamed(IXMLDOMDocument& document, const std::wstring& tagName)
{
    kel::ComPtr<IXMLDOMNodeList> list;
    require(document.selectNodes(kel::Bstr(tagName.c_str()).get(), list.put()), "searching for elements");
    return allOf(*list);
}

} // namespace host
