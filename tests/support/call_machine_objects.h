// What the call machine loads, holds and compares. Each object has a model beside it, which keeps alive what
// the real one is to keep alive.

#pragma once

#include "KelXmlLib/convenience.h"
#include "support/lines.h"
#include "support/model_tree.h"
#include "support/require.h"

namespace model
{

using kel::Bstr;
using kel::ComPtr;
using kel::Variant;

/// A text, and what Qt makes of it when it stands alone.
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

/// The document handle that goes from object to object, kept alive by each.
struct Handle
{
    NodePtr document; ///< null when it comes from a document that held no tree then
    NodePtr standIn;  ///< kept alive in the place of none

    const NodePtr& living() const { return document ? document : standIn; }
};

struct Object;
using ObjectPtr = std::shared_ptr<Object>;

/// A node object, a list or a map, and what it keeps alive.
struct Object
{
    DOMNodeType kind; ///< the class: element, attribute, document, or 0 for any other
    NodePtr node;     ///< null when the object holds none
    Handle handle;
    NodePtr ownerElement;          ///< an attribute's element
    ObjectPtr ownerDocument{};     ///< once it was asked for
    ObjectPtr root{};              ///< a document's element, once it was asked for
    const void* address = nullptr; ///< of the real one, where the same is handed out again

    /// The node, or one without anything.
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
    Nodes kept{}; ///< by a long list, until it is read again

    /// What a reading finds.
    Nodes read()
    {
        Nodes found;
        if (model->node && tag)
            collect(model->node, tag, found);
        else
            found = model->orNone().children;
        kept = found.size() >= (tag ? kFewFound : kLong) ? found : Nodes();
        return found;
    }
    static constexpr std::size_t kLong = 32;
    static constexpr std::size_t kFewFound = 4;
};

/// What every node answers for itself.
inline void compare(IXMLDOMNode& object, const Node& node, int type)
{
    DOMNodeType given = NODE_INVALID;
    object.get_nodeType(&given);
    require(static_cast<int>(given) == type);
    require(kel::textOf(object, &IXMLDOMNode::get_nodeName) == node.name);
    Bstr text;
    const bool hasText = type == NODE_ELEMENT || type == NODE_TEXT || type == NODE_CDATA_SECTION;
    const HRESULT answer = object.get_text(text.put());
    require(type == NODE_DOCUMENT || answer == (hasText ? S_OK : S_FALSE));
    require(text.c_str() == node.text());
    Variant value;
    type == NODE_ATTRIBUTE ? static_cast<IXMLDOMAttribute&>(object).get_value(value.put())
                           : object.get_nodeValue(value.put());
    require(type == NODE_ELEMENT || (value.type() == VT_BSTR && value.text() == node.value));
}

inline void compare(const Held& held)
{
    const Node& node = held->orNone();
    compare(*held.object, node, held->kind != NODE_INVALID ? held->kind : held->node ? node.type : 21);
    VARIANT_BOOL has = 7;
    held.object->hasChildNodes(&has);
    require(has == !node.children.empty());
    ComPtr<IXMLDOMNode> parent;
    const HRESULT answer = held.object->get_parentNode(parent.put());
    const NodePtr above = node.parent.lock();
    require(!parent == !above && answer == (above ? S_OK : S_FALSE));
    require(!above || kel::textOf(*parent, &IXMLDOMNode::get_nodeName) == above->name);
}

/// \param items the attributes, in an order that is Qt's
template <class Items>
void compareAttributes(const Items& items, const Node& element)
{
    std::size_t length = 0;
    for (const auto& item : items) {
        const NodePtr node = element.attribute(kel::textOf(*item, &IXMLDOMNode::get_nodeName));
        require(node && ++length <= element.attributes.size());
        compare(*item, *node, NODE_ATTRIBUTE);
    }
    require(length == element.attributes.size());
}

/// \param deep whether all that stands on and below the nodes is compared as well
template <class Items>
void compareNodes(const Items& items, const Nodes& nodes, bool deep)
{
    std::size_t length = 0;
    for (const auto& item : items) {
        require(length < nodes.size());
        const Node& node = *nodes[length++];
        compare(*item, node, node.type);
        if (!deep)
            continue;
        compareAttributes(kel::attributesOf(*item), node);
        compareNodes(kel::childrenOf(*item), node.children, true);
    }
    require(length == nodes.size());
}

inline void compare(HeldList& list)
{
    const Nodes expected = list.read();
    LONG length = -1;
    list.object->get_length(&length);
    require(static_cast<std::size_t>(length) == expected.size());
    compareNodes(kel::each(list.object), expected, false);
}

} // namespace model
