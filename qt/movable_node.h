// Moves Qt's node handles, which Qt can only copy.

#pragma once

#include <QtXml/QDomNode>

#include <utility>

namespace kelxml::qt
{

/// A `QDomNode` with move operations. Qt's class can only be copied. A copy needs two atomic operations,
/// which take most of the time of a step from one node to the next.
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

    /// Moves the node into a handle of type `Kind`. The caller must make sure that the node is of this kind.
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
