// A walk remembers its node's parent and next sibling, because a node that the loop has moved or removed no
// longer leads to them.

#include "KelXmlLib/kel/list.h"

#include "layer/access.h"
#include "layer/selection.h"

#include <unordered_map>

namespace kel::detail
{

using kelxml::qt::MovableNode;

/// Held, so that no new node gets the address of one of them.
struct MovedNodes
{
    std::unordered_map<const void*, Node> nodes;

    bool contain(const QDomNode& node) const { return nodes.count(MovableNode::identityOf(node)) != 0; }
};

namespace
{

/// The node after the subtree of `node` in document order; null at the end of the subtree of `origin`.
MovableNode afterSubtree(MovableNode node, const QDomNode& origin)
{
    MovableNode next;
    for (; next.isNull() && !node.isNull() && node != origin; node = node.parentNode())
        next = node.nextSibling();
    return next;
}

/// The node to check after `node`, which must still be in its place.
MovableNode following(const MovableNode& node, const Selection& selection)
{
    if (!selection.deep)
        return node.nextSibling();
    MovableNode child = node.firstChild();
    return child.isNull() ? afterSubtree(node, nodeOf(selection.origin)) : child;
}

/// The first selected node from `at` on.
MovableNode firstSelected(MovableNode at, const Selection& selection)
{
    while (!at.isNull() && !selection.matches(at))
        at = following(at, selection);
    return at;
}

MovableNode firstSelected(const Selection& selection)
{
    return firstSelected(nodeOf(selection.origin).firstChild(), selection);
}

/// Whether `node` is still between the siblings that it had when it was reached. New ones may have come
/// between, so this looks backwards from the next one.
/// \param before identity of the previous one, or null
bool isInPlace(const QDomNode& node, const QDomNode& parent, const void* before, const QDomNode& after)
{
    if (node.parentNode() != parent)
        return false;
    if (node.nextSibling() == after || MovableNode::identityOf(node.previousSibling()) == before)
        return true;
    MovableNode at = after.parentNode() == parent ? MovableNode(QDomNode(after)) : parent.lastChild();
    while (!at.isNull() && at != node && MovableNode::identityOf(at) != before)
        at = at.previousSibling();
    return at == node;
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
    MovableNode at;
    if (isInPlace(nodeOf(current), parent, m_before, after)) {
        at = following(nodeOf(current), *m_selection);
    } else {
        const QDomNode place = nodeOf(current).parentNode();
        if (place == parent || (m_selection->deep && !place.isNull())) {
            if (!m_moved)
                m_moved = std::make_shared<MovedNodes>();
            m_moved->nodes.emplace(MovableNode::identityOf(nodeOf(current)), current);
        }
        if (after.parentNode() == parent)
            at = after;
        else if (after.isNull() && m_selection->deep)
            at = afterSubtree(QDomNode(parent), nodeOf(m_selection->origin));
    }
    at = firstSelected(std::move(at), *m_selection);
    while (m_moved && m_moved->contain(at))
        at = firstSelected(following(at, *m_selection), *m_selection);
    reach(Access::make(std::move(at), documentOf(m_selection->origin)), current);
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
        for (MovableNode at = firstSelected(*selection); !at.isNull(); ++count)
            at = firstSelected(following(at, *selection), *selection);
    return count;
}

bool hasAny(const std::shared_ptr<const Selection>& selection)
{
    return selection && !firstSelected(*selection).isNull();
}

} // namespace kel::detail
