// A model of XML trees. The functions that change a model follow the documentation of the library's calls.
// Only `fromQt` uses Qt, to copy a tree that Qt has parsed. A node owns its children and attributes. When the
// node is destroyed, `parent` of these children and attributes becomes null.

#pragma once

#include "KelXmlLib/xmldom.h"

#include <QtXml/QDomDocument>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace model
{

struct Node;
using NodePtr = std::shared_ptr<Node>;
using Nodes = std::vector<NodePtr>;

/// The first node for which `isWanted` is true, or null.
template <class Predicate>
NodePtr first(const Nodes& nodes, Predicate isWanted)
{
    const auto found = std::find_if(nodes.begin(), nodes.end(), isWanted);
    return found == nodes.end() ? nullptr : *found;
}

struct Node
{
    int type = 0;
    std::wstring name, value;
    Nodes children, attributes;
    std::weak_ptr<Node> parent;

    NodePtr attribute(const std::wstring& wanted) const
    {
        return first(attributes, [&wanted](const NodePtr& item) { return item->name == wanted; });
    }
    /// For a text or CDATA section, its value; for an element, all texts below it; otherwise an empty text.
    std::wstring text() const
    {
        std::wstring all = type == NODE_TEXT || type == NODE_CDATA_SECTION ? value : L"";
        if (type == NODE_ELEMENT)
            for (const NodePtr& child : children)
                all += child->text();
        return all;
    }
};

inline void adopt(const NodePtr& parent, const NodePtr& child, Nodes& place)
{
    child->parent = parent;
    place.push_back(child);
}

inline NodePtr make(int type, const std::wstring& name, const std::wstring& value = {})
{
    return std::make_shared<Node>(Node{type, name, value, {}, {}, {}});
}

/// Copies a tree that Qt's parser has built. Cuts off each value at its first U+0000.
inline NodePtr fromQt(const QDomNode& node)
{
    NodePtr copy =
        make(node.nodeType(), node.nodeName().toStdWString(), node.nodeValue().toStdWString().c_str());
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        adopt(copy, fromQt(child), copy->children);
    const QDomNamedNodeMap attributes = node.attributes();
    for (int index = 0; index < attributes.length(); ++index)
        adopt(copy, fromQt(attributes.item(index)), copy->attributes);
    return copy;
}

inline NodePtr copyOf(const Node& node, bool deep)
{
    NodePtr copy = make(node.type, node.name, node.value);
    for (const NodePtr& attribute : node.attributes)
        adopt(copy, copyOf(*attribute, true), copy->attributes);
    if (deep)
        for (const NodePtr& child : node.children)
            adopt(copy, copyOf(*child, true), copy->children);
    return copy;
}

/// Removes `child` from `parent`. \return whether `parent` had this child
inline bool remove(const NodePtr& parent, const NodePtr& child)
{
    if (!parent)
        return false;
    const auto place = std::find(parent->children.begin(), parent->children.end(), child);
    if (place == parent->children.end())
        return false;
    child->parent.reset();
    parent->children.erase(place);
    return true;
}

/// \return whether the documentation allows `child` to be appended to `parent`
inline bool fits(const NodePtr& parent, const NodePtr& child)
{
    if (!parent || !child || child->type == NODE_DOCUMENT)
        return false;
    for (NodePtr node = parent; node; node = node->parent.lock())
        if (node == child)
            return false;
    const NodePtr from = child->parent.lock();
    return !from || child->type != NODE_ATTRIBUTE || from->attribute(child->name) != child;
}

/// Appends `child` if the documentation allows it; otherwise does nothing.
inline void append(const NodePtr& parent, const NodePtr& child)
{
    if (!fits(parent, child))
        return;
    remove(child->parent.lock(), child);
    adopt(parent, child, parent->children);
}

/// \param place the child of `parent` before which `child` is inserted
inline void insertBefore(const NodePtr& parent, const NodePtr& child, const NodePtr& place)
{
    if (child == place)
        return;
    append(parent, child);
    Nodes& children = parent->children;
    std::rotate(std::find(children.begin(), children.end(), place), std::prev(children.end()),
                children.end());
}

/// Removes the first child, and appends a text node.
inline void setText(const NodePtr& parent, const std::wstring& text)
{
    if (!parent->children.empty())
        remove(parent, parent->children.front());
    adopt(parent, make(NODE_TEXT, L"#text", text), parent->children);
}

inline void setValue(const NodePtr& node, const std::wstring& value)
{
    node->value = value;
    if (node->type == NODE_ATTRIBUTE)
        setText(node, value);
}

inline void setAttribute(const NodePtr& element, const std::wstring& name, const std::wstring& value)
{
    if (!element->attribute(name))
        adopt(element, make(NODE_ATTRIBUTE, name), element->attributes);
    setValue(element->attribute(name), value);
}

/// Adds to `found`, in document order, the elements below `top` that have this tag name.
inline void collect(const NodePtr& top, const std::wstring& tag, Nodes& found)
{
    for (const NodePtr& child : top->children) {
        if (child->type == NODE_ELEMENT && child->name == tag)
            found.push_back(child);
        collect(child, tag, found);
    }
}

} // namespace model
