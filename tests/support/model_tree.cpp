// The rules of the model.

#include "support/model_tree.h"

#include "KelXmlLib/xmldom.h"

#include <algorithm>

namespace model
{

namespace
{

NodePtr plain(int type, const std::wstring& name, const std::wstring& value)
{
    auto node = std::make_shared<Node>();
    node->type = type;
    node->name = name;
    node->value = value;
    return node;
}

void adopt(const NodePtr& parent, const NodePtr& child, std::vector<NodePtr>& place)
{
    child->parent = parent;
    place.push_back(child);
}

} // namespace

NodePtr Node::attribute(const std::wstring& wanted) const
{
    for (const NodePtr& item : attributes)
        if (item->name == wanted)
            return item;
    return nullptr;
}

std::wstring Node::text() const
{
    std::wstring all;
    for (const NodePtr& child : children) {
        if (child->type == NODE_TEXT || child->type == NODE_CDATA_SECTION)
            all += child->value;
        else if (child->type == NODE_ELEMENT)
            all += child->text();
    }
    return all;
}

NodePtr make(int type, const std::wstring& name, const std::wstring& value)
{
    NodePtr node = plain(type, name, value);
    if (type == NODE_ATTRIBUTE && !value.empty())
        adopt(node, make(NODE_TEXT, L"#text", value), node->children);
    return node;
}

NodePtr fromQt(const QDomNode& node)
{
    NodePtr copy = plain(node.nodeType(), node.nodeName().toStdWString(), node.nodeValue().toStdWString());
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        adopt(copy, fromQt(child), copy->children);
    const QDomNamedNodeMap attributes = node.attributes();
    for (int index = 0; index < attributes.length(); ++index)
        adopt(copy, fromQt(attributes.item(index)), copy->attributes);
    return copy;
}

NodePtr copyOf(const Node& node, bool deep)
{
    NodePtr copy = plain(node.type, node.name, node.value);
    for (const NodePtr& attribute : node.attributes)
        adopt(copy, copyOf(*attribute, true), copy->attributes);
    if (deep)
        for (const NodePtr& child : node.children)
            adopt(copy, copyOf(*child, true), copy->children);
    return copy;
}

bool append(const NodePtr& parent, const NodePtr& child)
{
    if (!parent || !child || child->type == NODE_DOCUMENT)
        return false;
    for (NodePtr node = parent; node; node = node->parent.lock())
        if (node == child)
            return false;
    if (const NodePtr from = child->parent.lock()) {
        if (child->type == NODE_ATTRIBUTE && from->attribute(child->name) == child)
            return false;
        remove(from, child);
    }
    adopt(parent, child, parent->children);
    return true;
}

bool remove(const NodePtr& parent, const NodePtr& child)
{
    if (!parent || !child || child->parent.lock() != parent)
        return false;
    const auto place = std::find(parent->children.begin(), parent->children.end(), child);
    if (place == parent->children.end())
        return false;
    child->parent.reset();
    parent->children.erase(place);
    return true;
}

void setText(const NodePtr& parent, const std::wstring& text)
{
    if (!parent)
        return;
    if (!parent->children.empty())
        remove(parent, parent->children.front());
    adopt(parent, make(NODE_TEXT, L"#text", text), parent->children);
}

void setValue(const NodePtr& node, const std::wstring& value)
{
    if (!node)
        return;
    node->value = value;
    if (node->type == NODE_ATTRIBUTE)
        setText(node, value);
}

void setAttribute(const NodePtr& element, const std::wstring& name, const std::wstring& value)
{
    if (!element)
        return;
    if (const NodePtr existing = element->attribute(name))
        setValue(existing, value);
    else
        adopt(element, make(NODE_ATTRIBUTE, name, value), element->attributes);
}

void collect(const NodePtr& top, const std::wstring& tag, std::vector<NodePtr>& found)
{
    for (const NodePtr& child : top->children) {
        if (child->type == NODE_ELEMENT && child->name == tag)
            found.push_back(child);
        collect(child, tag, found);
    }
}

} // namespace model
