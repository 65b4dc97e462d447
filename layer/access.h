// Access to the Qt handles inside a `kel::Node` and its derived classes, and functions that create such
// values.

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

/// The Qt handles of a value. The order of the members matters, because C++ destroys the last member first:
/// an attribute has only a plain pointer to its element, so the element must be destroyed after the
/// attribute.
struct State
{
    QDomNode ownerElement; ///< the element of an attribute; else null
    QDomDocument document; ///< null only if the node is null
    kelxml::qt::MovableNode node;
};

/// Reads and creates the private state of the layer's values.
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

    /// Creates a value. \param node must be null, or of the kind that `Value` stands for
    template <class Value = Node>
    static Value make(kelxml::qt::MovableNode&& node, const QDomDocument& document)
    {
        auto value = null<Value>();
        assign(value, std::move(node), document);
        return value;
    }
    static void assign(Node& value, kelxml::qt::MovableNode&& node, const QDomDocument& document);

    /// Converts the node to a `Kind`, such as `QDomElement`; null if it is of another kind.
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
