// What Qt's handles lack.

#pragma once

#include <QtXml/QDomNode>

#include <utility>

namespace kelxml::qt
{

/// A handle that can be moved. Qt's own can only be copied, and the two atomic counts of a copy are most of
/// what a step from node to node costs.
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

    /// The same node under the type of its kind, which the caller knows it to be of.
    template <class Kind>
    Kind as() &&
    {
        Kind node;
        exchange(node, *this);
        return node;
    }

    /// Which node a handle stands for, for comparing; never followed.
    static const void* identityOf(const QDomNode& node) { return node.*(&MovableNode::impl); }

    static void exchange(QDomNode& one, QDomNode& other) noexcept
    {
        std::swap(one.*(&MovableNode::impl), other.*(&MovableNode::impl));
    }
};

} // namespace kelxml::qt
