// Loops over lists. When a walk reaches a node, it stores the node's parent and siblings: once the loop has
// moved or removed the node, the node no longer has links to them.

#include "KelXmlLib/kel/list.h"

#include "layer/access.h"
#include "layer/selection.h"

#include <unordered_map>

namespace kel::detail
{

using kelxml::qt::MovableNode;

/// The nodes, by their address. They are kept alive, so that no new node gets the same address.
struct MovedNodes
{
    std::unordered_map<const void*, Node> nodes;

    bool contains(const QDomNode& node) const { return nodes.count(MovableNode::identityOf(node)) != 0; }
};

namespace
{

/// Returns the first node after the subtree of `node`, in document order; null at the end of the subtree of
/// `origin`.
MovableNode afterSubtree(MovableNode node, const QDomNode& origin)
{
    MovableNode next;
    for (; next.isNull() && !node.isNull() && node != origin; node = node.parentNode())
        next = node.nextSibling();
    return next;
}

/// Returns the next node to check: the next one in document order if the selection includes all descendants,
/// else the next sibling.
/// \param node must not have been moved or removed
MovableNode following(const MovableNode& node, const Selection& selection)
{
    if (!selection.deep)
        return node.nextSibling();
    MovableNode child = node.firstChild();
    return child.isNull() ? afterSubtree(node, nodeOf(selection.origin)) : child;
}

/// Returns `node` if it is selected, else the first selected node after it.
MovableNode firstSelected(MovableNode node, const Selection& selection)
{
    while (!node.isNull() && !selection.matches(node))
        node = following(node, selection);
    return node;
}

MovableNode firstSelected(const Selection& selection)
{
    return firstSelected(nodeOf(selection.origin).firstChild(), selection);
}

/// Checks whether `node` is still where the walk reached it: below the same parent, and between the same two
/// siblings. They need not be its neighbours, because the loop may have inserted nodes. `before` is only an
/// address, so the search starts at `after` and goes backwards.
/// \param before identifies the sibling that was before `node`; null if there was none
/// \param after the sibling that was after `node`; null if there was none
bool isInPlace(const QDomNode& node, const QDomNode& parent, const void* before, const QDomNode& after)
{
    if (node.parentNode() != parent)
        return false;
    if (node.nextSibling() == after || MovableNode::identityOf(node.previousSibling()) == before)
        return true;
    MovableNode sibling = after.parentNode() == parent ? MovableNode(QDomNode(after)) : parent.lastChild();
    while (!sibling.isNull() && sibling != node && MovableNode::identityOf(sibling) != before)
        sibling = sibling.previousSibling();
    return sibling == node;
}

} // namespace

bool Selection::matches(const MovableNode& node) const
{
    return (!elementsOnly || node.isElement()) && (name.isNull() || node.nodeName() == name);
}

MovableNode firstNamed(MovableNode&& node, const QString& name)
{
    return firstSelected(std::move(node), {name, true, false});
}

Walk::Walk(std::shared_ptr<const Selection> selection, Node& current) : m_selection(std::move(selection))
{
    if (m_selection)
        reach(Access::make(firstSelected(*m_selection), documentOf(m_selection->origin)), current);
}

void Walk::next(Node& current)
{
    const QDomNode& parent = nodeOf(m_parent);
    const MovableNode& after = nodeOf(m_after);
    MovableNode next;
    if (isInPlace(nodeOf(current), parent, m_before, after)) {
        next = following(nodeOf(current), *m_selection);
    } else {
        const QDomNode newParent = nodeOf(current).parentNode();
        if (newParent == parent || (m_selection->deep && !newParent.isNull())) {
            if (!m_moved)
                m_moved = std::make_shared<MovedNodes>();
            m_moved->nodes.emplace(MovableNode::identityOf(nodeOf(current)), current);
        }
        if (after.parentNode() == parent)
            next = after;
        else if (after.isNull() && m_selection->deep)
            next = afterSubtree(QDomNode(parent), nodeOf(m_selection->origin));
    }
    next = firstSelected(std::move(next), *m_selection);
    while (m_moved && m_moved->contains(next))
        next = firstSelected(following(next, *m_selection), *m_selection);
    reach(Access::make(std::move(next), documentOf(m_selection->origin)), current);
}

void Walk::reach(Node&& found, Node& current)
{
    current = std::move(found);
    Access::of(m_parent).node = nodeOf(current).parentNode();
    Access::of(m_after).node = nodeOf(current).nextSibling();
    m_before = MovableNode::identityOf(nodeOf(current).previousSibling());
}

std::size_t count(const std::shared_ptr<const Selection>& selection)
{
    std::size_t count = 0;
    if (selection)
        for (MovableNode node = firstSelected(*selection); !node.isNull(); ++count)
            node = firstSelected(following(node, *selection), *selection);
    return count;
}

bool hasAny(const std::shared_ptr<const Selection>& selection)
{
    return selection && !firstSelected(*selection).isNull();
}

} // namespace kel::detail
