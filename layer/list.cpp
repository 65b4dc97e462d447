// Loops over lists. When a `Walk` reaches a node, the `Walk` stores the node's parent and siblings. The
// `Walk` needs them if the body of the loop moves or removes the node, because the node then no longer has
// links to its former parent and siblings.

#include "KelXmlLib/kel/list.h"

#include "layer/access.h"
#include "layer/selection.h"

#include <unordered_map>

namespace kel::detail
{

using kelxml::qt::MovableNode;

/// The moved nodes, by their addresses. The map keeps the moved nodes alive, so that no new node gets the
/// address of a moved node.
struct MovedNodes
{
    std::unordered_map<const void*, Node> nodes;

    bool contains(const QDomNode& node) const { return nodes.count(MovableNode::identityOf(node)) != 0; }
};

namespace
{

/// Returns the first node after the subtree of `node`, in document order. Returns null if that node would be
/// outside the subtree of `origin`.
MovableNode afterSubtree(MovableNode node, const QDomNode& origin)
{
    MovableNode next;
    for (; next.isNull() && !node.isNull() && node != origin; node = node.parentNode())
        next = node.nextSibling();
    return next;
}

/// Returns the node to check after `node`: the next node in document order if the selection includes all
/// descendants, else the next sibling of `node`.
/// \param node must not have been moved or removed during the loop
MovableNode following(const MovableNode& node, const Selection& selection)
{
    if (!selection.deep)
        return node.nextSibling();
    MovableNode child = node.firstChild();
    return child.isNull() ? afterSubtree(node, nodeOf(selection.origin)) : child;
}

/// Returns `node` if the selection includes `node`, else the first selected node after `node`.
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

/// Checks whether `node` is still where the walk reached `node`: a child of `parent`, and between the
/// siblings `before` and `after`. The body of the loop may have inserted nodes, so other siblings may now be
/// between `node` and these two siblings. The search starts at `after` and goes backwards, because `before`
/// is only an address.
/// \param before the address of the sibling that was before `node`; null if `node` was the first child
/// \param after the sibling that was after `node`; null if `node` was the last child
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
    if (!m_selection)
        return;
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
