// Moves Qt's node handles, which Qt can only copy.

#pragma once

#include <QtXml/QDomNode>

#include <utility>

namespace kelxml::qt
{

/// A `QDomNode` with move operations. Qt's class can only be copied, which needs two atomic operations. In a
/// walk from node to node, these two operations would take most of the time.
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

    /// Moves the node into a handle of class `Kind`, such as `QDomElement`. The caller must make sure that
    /// the type of the node fits this class.
    template <class Kind>
    Kind as() &&
    {
        Kind node;
        exchange(node, *this);
        return node;
    }

    /// Returns an address that identifies the node. Use the address only as a key.
    static const void* identityOf(const QDomNode& node) { return node.*(&MovableNode::impl); }

    static void exchange(QDomNode& one, QDomNode& other) noexcept
    {
        std::swap(one.*(&MovableNode::impl), other.*(&MovableNode::impl));
    }
};

} // namespace kelxml::qt
