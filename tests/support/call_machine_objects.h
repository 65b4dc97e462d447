// The texts and objects of the call machine. Each object has a model, which owns whatever the real object
// must keep alive.

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

/// The document that an object keeps alive. Objects returned by the object get the same handle.
struct Handle
{
    NodePtr document; ///< null if the first object came from a document without a tree
    NodePtr fallback; ///< kept alive if `document` is null

    const NodePtr& documentOrFallback() const { return document ? document : fallback; }
};

struct Object;
using ObjectPtr = std::shared_ptr<Object>;

/// The model of a node object, a list or a map. Owns what the object must keep alive.
struct Object
{
    DOMNodeType kind; ///< the class: element, attribute or document; 0 for other classes
    NodePtr node;     ///< null if the object has no node
    Handle handle;
    NodePtr ownerElement;          ///< an attribute's element
    ObjectPtr ownerDocument{};     ///< set by the first get_ownerDocument
    ObjectPtr root{};              ///< the document element; set by the first get_documentElement
    const void* address = nullptr; ///< of the real object, if each call must return the same object

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

/// Casts without a check. The caller knows that the object is a document.
inline IXMLDOMDocument& asDocument(const Held& held)
{
    return static_cast<IXMLDOMDocument&>(*held.object);
}

struct HeldList : HeldAs<ComPtr<IXMLDOMNodeList>>
{
    const wchar_t* tag; ///< null for the children
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

/// Compares the type, name, text and value of a node.
inline void compare(IXMLDOMNode& object, const Node& node, int type)
{
    DOMNodeType given = NODE_INVALID;
    object.get_nodeType(&given);
    requireEqual(static_cast<int>(given), type, "the nodeType");
    requireEqual(nameOf(object), node.name, "the nodeName");
    Bstr text;
    const bool hasText = type == NODE_ELEMENT || type == NODE_TEXT || type == NODE_CDATA_SECTION;
    const HRESULT answer = object.get_text(text.put());
    if (type != NODE_DOCUMENT)
        requireEqual(answer, hasText ? S_OK : S_FALSE, "get_text succeeds for elements, text and CDATA");
    requireEqual(std::wstring(text.c_str()), node.text(), "the text");
    Variant value;
    if (type == NODE_ATTRIBUTE)
        static_cast<IXMLDOMAttribute&>(object).get_value(value.put());
    else
        object.get_nodeValue(value.put());
    if (type != NODE_ELEMENT)
        requireEqual(std::wstring(value.text()), node.value, "the value or nodeValue");
}

inline void compare(const Held& held)
{
    const Node& node = held->nodeOrEmpty();
    const int typeOfPlainNode = held->node ? node.type : kTypeWithoutNode;
    compare(*held.object, node, held->kind == NODE_INVALID ? typeOfPlainNode : held->kind);
    VARIANT_BOOL has = 7;
    held.object->hasChildNodes(&has);
    requireEqual<int>(has, !node.children.empty(), "hasChildNodes");
    ComPtr<IXMLDOMNode> parent;
    const HRESULT answer = held.object->get_parentNode(parent.put());
    const NodePtr above = node.parent.lock();
    requireEqual(answer, above ? S_OK : S_FALSE, "get_parentNode succeeds if there is a parent");
    requireEqual(parent ? nameOf(*parent) : L"", above ? above->name : L"", "the parent's name");
}

/// \param items the attributes in any order
template <class Items>
void compareAttributes(const Items& items, const Node& element)
{
    std::size_t length = 0;
    for (const auto& item : items) {
        const NodePtr node = element.attribute(nameOf(*item));
        require(node && ++length <= element.attributes.size(),
                "a map contains only attributes of its element");
        compare(*item, *node, NODE_ATTRIBUTE);
    }
    requireEqual(length, element.attributes.size(), "the length of a map that was read to its end");
}

/// \param deep whether to compare attributes and descendants as well
template <class Items>
void compareNodes(const Items& items, const Nodes& nodes, bool deep)
{
    std::size_t length = 0;
    for (const auto& item : items) {
        require(length < nodes.size(), "a list ends after its last node");
        const Node& node = *nodes[length++];
        compare(*item, node, node.type);
        if (!deep)
            continue;
        compareAttributes(itemsOf(*get(*item, &IXMLDOMNode::get_attributes)), node);
        compareNodes(itemsOf(*get(*item, &IXMLDOMNode::get_childNodes)), node.children, true);
    }
    requireEqual(length, nodes.size(), "the length of a list that was read to its end");
}

inline void compare(const HeldList& list)
{
    const Nodes expected = list.expected();
    LONG length = -1;
    list.object->get_length(&length);
    requireEqual(static_cast<std::size_t>(length), expected.size(), "the length of a list");
    compareNodes(itemsOf(*list.object), expected, false);
}

} // namespace model
