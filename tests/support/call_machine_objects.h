// What the call machine loads, holds and compares. Each object has a model, which keeps alive what the real
// one must keep alive.

#pragma once

#include "support/lines.h"
#include "support/model_tree.h"
#include "support/objects.h"

namespace model
{

/// A text, and the tree that Qt alone reads from it.
struct Text
{
    std::wstring xml;
    QDomDocument parsed{};
    bool isLoaded = parsed.setContent(QString::fromStdWString(xml));
};

/// Texts of every kind.
inline const std::vector<Text>& texts()
{
    static const std::vector<Text> all = [] {
        std::vector<Text> read;
        keltest::forEachRow(KEL_TESTS "call_machine_texts.txt", [&read](keltest::Row line) {
            read.push_back({keltest::expand(line.str(), 0).toStdWString()});
        });
        return read;
    }();
    return all;
}

/// The document handle that each object passes on to those made from it, and keeps alive.
struct Handle
{
    NodePtr document; ///< null if the object comes from a document that had no tree yet
    NodePtr fallback; ///< kept alive instead if `document` is null

    const NodePtr& documentOrFallback() const { return document ? document : fallback; }
};

struct Object;
using ObjectPtr = std::shared_ptr<Object>;

/// The model of a node object, a list or a map, and what it keeps alive.
struct Object
{
    DOMNodeType kind; ///< the class: element, attribute, document, or 0 for any other
    NodePtr node;     ///< null when the object has no node
    Handle handle;
    NodePtr ownerElement;          ///< an attribute's element
    ObjectPtr ownerDocument{};     ///< set when it is first asked for
    ObjectPtr root{};              ///< a document's element; set when it is first asked for
    const void* address = nullptr; ///< of the real object, if the same one must be returned each time

    /// The node, or an empty node.
    const Node& orNone() const { return node ? *node : kNone; }
    inline static const Node kNone;
};

inline ObjectPtr makeObject(DOMNodeType kind, const NodePtr& node, const Handle& handle)
{
    const NodePtr parent = node && node->type == NODE_ATTRIBUTE ? node->parent.lock() : nullptr;
    const bool isOwned = parent && parent->type == NODE_ELEMENT;
    return std::make_shared<Object>(Object{kind, node, handle, isOwned ? parent : nullptr});
}

template <class Interface>
struct HeldAs
{
    ComPtr<Interface> object;
    ObjectPtr model;

    const Object* operator->() const { return model.get(); }
};
using Held = HeldAs<IXMLDOMNode>;
using HeldMap = HeldAs<IXMLDOMNamedNodeMap>;

struct HeldList : HeldAs<IXMLDOMNodeList>
{
    const wchar_t* tag; ///< null for the children
    unsigned cursor = 0;

    /// Reads the list again.
    Nodes read() const
    {
        if (!model->node || !tag)
            return model->orNone().children;
        Nodes found;
        collect(model->node, tag, found);
        return found;
    }
};

/// The type of an object that lost its node.
constexpr int kTypeWithoutNode = 21;

/// Compares the properties that every node has.
inline void compare(IXMLDOMNode& object, const Node& node, int type)
{
    DOMNodeType given = NODE_INVALID;
    object.get_nodeType(&given);
    requireEqual(static_cast<int>(given), type, "get_nodeType");
    requireEqual(nameOf(object), node.name, "get_nodeName");
    Bstr text;
    const bool hasText = type == NODE_ELEMENT || type == NODE_TEXT || type == NODE_CDATA_SECTION;
    const HRESULT answer = object.get_text(text.put());
    if (type != NODE_DOCUMENT)
        requireEqual(answer, hasText ? S_OK : S_FALSE, "get_text succeeds for elements, text and CDATA");
    requireEqual(std::wstring(text.c_str()), node.text(), "get_text");
    Variant value;
    if (type == NODE_ATTRIBUTE)
        static_cast<IXMLDOMAttribute&>(object).get_value(value.put());
    else
        object.get_nodeValue(value.put());
    if (type != NODE_ELEMENT)
        requireEqual(std::wstring(value.text()), node.value, "get_value or get_nodeValue");
}

inline void compare(const Held& held)
{
    const Node& node = held->orNone();
    const int typeOfPlainNode = held->node ? node.type : kTypeWithoutNode;
    compare(*held.object, node, held->kind == NODE_INVALID ? typeOfPlainNode : held->kind);
    VARIANT_BOOL has = 7;
    held.object->hasChildNodes(&has);
    requireEqual<int>(has, !node.children.empty(), "hasChildNodes");
    ComPtr<IXMLDOMNode> parent;
    const HRESULT answer = held.object->get_parentNode(parent.put());
    const NodePtr above = node.parent.lock();
    requireEqual(answer, above ? S_OK : S_FALSE, "get_parentNode succeeds where there is a parent");
    requireEqual(parent ? nameOf(*parent) : L"", above ? above->name : L"", "the parent's name");
}

/// \param items the attributes, in Qt's order
template <class Items>
void compareAttributes(const Items& items, const Node& element)
{
    std::size_t length = 0;
    for (const auto& item : items) {
        const NodePtr node = element.attribute(nameOf(*item));
        require(node && ++length <= element.attributes.size(), "a map has only attributes of its element");
        compare(*item, *node, NODE_ATTRIBUTE);
    }
    requireEqual(length, element.attributes.size(), "a map has each attribute of its element");
}

/// \param deep whether attributes and descendants are compared as well
template <class Items>
void compareNodes(const Items& items, const Nodes& nodes, bool deep)
{
    std::size_t length = 0;
    for (const auto& item : items) {
        require(length < nodes.size(), "a list ends with its last node");
        const Node& node = *nodes[length++];
        compare(*item, node, node.type);
        if (!deep)
            continue;
        compareAttributes(itemsOf(*get(*item, &IXMLDOMNode::get_attributes)), node);
        compareNodes(itemsOf(*get(*item, &IXMLDOMNode::get_childNodes)), node.children, true);
    }
    requireEqual(length, nodes.size(), "a list goes on to its last node");
}

inline void compare(const HeldList& list)
{
    const Nodes expected = list.read();
    LONG length = -1;
    list.object->get_length(&length);
    requireEqual(static_cast<std::size_t>(length), expected.size(), "get_length of a list");
    compareNodes(itemsOf(*list.object), expected, false);
}

} // namespace model
