// Gives the layer access to the Qt handles inside a `kel::Node` or an object of a derived class, and creates
// objects of these classes.

#pragma once

#include "KelXmlLib/kel.h"
#include "qt/movable_node.h"
#include "qt/node_ref.h"

#include <QtXml/QDomDocument>

#include <new>
#include <type_traits>
#include <utility>

namespace kel::detail
{

/// The Qt handles inside a `kel::Node`. The order of the members matters, because C++ destroys the last
/// member first. If `node` is an attribute, the attribute has only a plain pointer to its element, so
/// `ownerElement` must be destroyed after `node`.
struct State
{
    QDomNode ownerElement; ///< the element that `node` belongs to, if `node` is an attribute; else null
    QDomDocument document; ///< the document of `node`; null only if `node` is null
    kelxml::qt::MovableNode node;
};

/// Reads and creates the private state of a `kel::Node`.
struct Access
{
    static const State& of(const Node& value) noexcept
    {
        return *std::launder(reinterpret_cast<const State*>(value.m_state));
    }
    static State& of(Node& value) noexcept { return *std::launder(reinterpret_cast<State*>(value.m_state)); }

    template <class Value>
    static Value null()
    {
        if constexpr (std::is_same_v<Value, Document>)
            return Document(nullptr);
        else
            return Value();
    }

    /// Creates an object of the class `Value`, which is `Node` or a derived class.
    /// \param node must be null, or a node of the kind that `Value` can refer to
    template <class Value = Node>
    static Value make(kelxml::qt::MovableNode&& node, const QDomDocument& document)
    {
        auto value = null<Value>();
        assign(value, std::move(node), document);
        return value;
    }
    static void assign(Node& value, kelxml::qt::MovableNode&& node, const QDomDocument& document);

    /// Returns the node as a `Kind`, such as `QDomElement`. The node must be null or of that kind.
    template <class Kind>
    static Kind as(const Node& value)
    {
        return kelxml::qt::MovableNode(of(value).node).as<Kind>();
    }
};

inline const kelxml::qt::MovableNode& nodeOf(const Node& value) noexcept
{
    return Access::of(value).node;
}
inline const QDomDocument& documentOf(const Node& value) noexcept
{
    return Access::of(value).document;
}
inline kelxml::qt::NodeRef refTo(const Node& value) noexcept
{
    return {nodeOf(value), {documentOf(value)}};
}

} // namespace kel::detail
