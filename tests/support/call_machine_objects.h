// The texts that the call machine (the random-call test in call_machine.h) loads, and the objects that the
// machine holds. Each object has a model. The model owns the nodes that the real object must keep alive.

#pragma once

#include "support/model_tree.h"
#include "support/objects.h"
#include "support/patterns.h"

namespace model
{

/// A text, and the tree that Qt alone builds from it.
struct Text
{
    std::wstring xml;
    QDomDocument parsed{};
    bool isLoaded = parsed.setContent(QString::fromStdWString(xml));
};

/// The texts of call_machine_texts.txt.
inline const std::vector<Text>& texts()
{
    static const std::vector<Text> all = [] {
        std::vector<Text> read;
        keltest::forEachRow(KEL_TESTS "call_machine_texts.txt", [&read](keltest::Row row) {
            read.push_back({keltest::expand(row.str(), 0).toStdWString()});
        });
        return read;
    }();
    return all;
}

/// Says which document an object keeps alive: `document`, or else `fallback`. An object that a method returns
/// gets the `document` of the object that the method was called on.
struct Handle
{
    NodePtr document; ///< null if the object comes from a document without a tree
    /// The document to keep alive if `document` is null. If the parent keeps no document alive, the result of
    /// appendChild or removeChild gets the child's document as its `fallback`.
    NodePtr fallback;

    const NodePtr& documentOrFallback() const { return document ? document : fallback; }
};

struct Object;
using ObjectPtr = std::shared_ptr<Object>;

/// The model of a node object, a list or a map. Owns what the real object must keep alive.
struct Object
{
    DOMNodeType kind; ///< the class: element, attribute or document; 0 for other classes
    NodePtr node;     ///< null if the object has no node
    Handle handle;
    NodePtr ownerElement;      ///< an attribute's element
    ObjectPtr ownerDocument{}; ///< set by the first get_ownerDocument
    ObjectPtr root{};          ///< the document element; set by the first get_documentElement
    /// The address of the real object, or null if no call has returned the object yet. A later call for the
    /// same object must return the same address.
    const void* address = nullptr;

    const Node& nodeOrEmpty() const { return node ? *node : kEmpty; }
    inline static const Node kEmpty;
};

inline ObjectPtr makeObject(DOMNodeType kind, const NodePtr& node, const Handle& handle)
{
    const NodePtr parent = node && node->type == NODE_ATTRIBUTE ? node->parent.lock() : nullptr;
    const bool isOwned = parent && parent->type == NODE_ELEMENT;
    return std::make_shared<Object>(Object{kind, node, handle, isOwned ? parent : nullptr});
}

/// A pointer to an object of the library, or a value of the C++ layer, with its model.
template <class Real>
struct HeldAs
{
    Real object;
    ObjectPtr model;

    const Object* operator->() const { return model.get(); }
};
using Held = HeldAs<ComPtr<IXMLDOMNode>>;
using HeldMap = HeldAs<ComPtr<IXMLDOMNamedNodeMap>>;

/// Casts without a check: `held` must be a document.
inline IXMLDOMDocument& asDocument(const Held& held)
{
    return static_cast<IXMLDOMDocument&>(*held.object);
}

struct HeldList : HeldAs<ComPtr<IXMLDOMNodeList>>
{
    const wchar_t* tag; ///< the tag name that the list searches for; null for a list of children
    unsigned cursor = 0;

    /// The nodes that the list must have now.
    Nodes expected() const
    {
        if (!model->node || !tag)
            return model->nodeOrEmpty().children;
        Nodes found;
        collect(model->node, tag, found);
        return found;
    }
};

/// The nodeType of an object without a node.
constexpr int kTypeWithoutNode = 21;

/// Compares the type, name, text and value of an object with the model. \param type the expected nodeType
inline void compare(IXMLDOMNode& object, const Node& node, int type)
{
    DOMNodeType given = NODE_INVALID;
    object.get_nodeType(&given);
    requireEqual(static_cast<int>(given), type, "get_nodeType fits the model");
    requireEqual(nameOf(object), node.name, "get_nodeName fits the model");
    Bstr text;
    const bool hasText = type == NODE_ELEMENT || type == NODE_TEXT || type == NODE_CDATA_SECTION;
    const HRESULT code = object.get_text(text.put());
    if (type != NODE_DOCUMENT)
        requireOk(code, "get_text", hasText);
    requireEqual(std::wstring(text.c_str()), node.text(), "get_text fits the model");
    Variant value;
    type == NODE_ATTRIBUTE ? static_cast<IXMLDOMAttribute&>(object).get_value(value.put())
                           : object.get_nodeValue(value.put());
    if (type != NODE_ELEMENT)
        requireEqual(std::wstring(value.text()), node.value, "get_nodeValue fits the model");
}

inline void compare(const Held& held)
{
    const Node& node = held->nodeOrEmpty();
    const int typeOfPlainNode = held->node ? node.type : kTypeWithoutNode;
    compare(*held.object, node, held->kind == NODE_INVALID ? typeOfPlainNode : held->kind);
    VARIANT_BOOL has = 7;
    held.object->hasChildNodes(&has);
    requireEqual<int>(has, !node.children.empty(), "hasChildNodes fits the model");
    ComPtr<IXMLDOMNode> parent;
    const HRESULT code = held.object->get_parentNode(parent.put());
    const NodePtr above = node.parent.lock();
    requireOk(code, "get_parentNode", bool(above));
    requireEqual(parent ? nameOf(*parent) : L"", above ? above->name : L"", "get_parentNode fits the model");
}

/// \param items the attributes of `element`, in any order
inline void compareAttributes(const std::vector<ComPtr<IXMLDOMNode>>& items, const Node& element)
{
    requireEqual(items.size(), element.attributes.size(), "a map returns as many nodes as the model has");

    for (const auto& item : items) {
        const NodePtr node = element.attribute(nameOf(*item));
        if (!node)
            fail("a map contains only attributes of its element: " + shown(nameOf(*item)));
        compare(*item, *node, NODE_ATTRIBUTE);
    }
}

/// \param deep whether to compare attributes and descendants too
inline void compareNodes(const std::vector<ComPtr<IXMLDOMNode>>& items, const Nodes& nodes, bool deep)
{
    requireEqual(items.size(), nodes.size(), "a list returns as many nodes as the model has");
    std::size_t index = 0;

    for (const auto& item : items) {
        const Node& node = *nodes[index++];
        compare(*item, node, node.type);
        if (!deep)
            continue;
        compareAttributes(itemsOf(*get(*item, &IXMLDOMNode::get_attributes)), node);
        compareNodes(itemsOf(*get(*item, &IXMLDOMNode::get_childNodes)), node.children, true);
    }
}

inline void compare(const HeldList& list)
{
    const Nodes expected = list.expected();
    LONG length = -1;
    list.object->get_length(&length);
    requireEqual(static_cast<std::size_t>(length), expected.size(), "get_length fits the model");
    compareNodes(itemsOf(*list.object), expected, false);
}

} // namespace model
