// The handles in a value of the layer, and how values are created.

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

/// C++ destroys the members last to first: the node, then its document, and last the element of an attribute,
/// to which the attribute has only a plain pointer.
struct State
{
    QDomNode ownerElement;
    QDomDocument document; ///< null only if the node is null
    kelxml::qt::MovableNode node;
};

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

    /// \param node of the kind that `Value` represents, or null
    template <class Value = Node>
    static Value make(kelxml::qt::MovableNode&& node, const QDomDocument& document)
    {
        auto value = null<Value>();
        assign(value, std::move(node), document);
        return value;
    }
    static void assign(Node& value, kelxml::qt::MovableNode&& node, const QDomDocument& document);

    /// The node as a `Kind`; null if it is of another kind.
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
