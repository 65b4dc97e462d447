// Moving Qt's handles, which Qt can only copy.

#pragma once

#include <QtXml/QDomNode>

#include <utility>

namespace kelxml::qt
{

/// A `QDomNode` that can be moved. Qt's can only be copied, and a copy's two atomic counts are most of the
/// cost of a step from node to node.
class MovableNode : public QDomNode
{
public:
    MovableNode() = default;
    MovableNode(QDomNode&& node) noexcept { exchange(*this, node); }
    MovableNode(const MovableNode&) = default;
    MovableNode(MovableNode&& other) noexcept { exchange(*this, other); }
    MovableNode& operator=(const MovableNode&) = default;
    MovableNode& operator=(MovableNode&& other) noexcept
    {
        exchange(*this, other);
        return *this;
    }
    ~MovableNode() = default;

    /// Moves the node into a handle of its own kind. The caller must know the kind.
    template <class Kind>
    Kind as() &&
    {
        Kind node;
        exchange(node, *this);
        return node;
    }

    /// An address that identifies the node, for comparison only.
    static const void* identityOf(const QDomNode& node) { return node.*(&MovableNode::impl); }

    static void exchange(QDomNode& one, QDomNode& other) noexcept
    {
        std::swap(one.*(&MovableNode::impl), other.*(&MovableNode::impl));
    }
};

} // namespace kelxml::qt
