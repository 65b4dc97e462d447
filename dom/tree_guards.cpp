// The guards. They wait for their cause where they can: a host that keeps its documents apart pays for none
// but the look at an appended node.

#include "dom/tree_guards.h"

#include "dom/handle.h"
#include "dom/tree_depth.h"

#include <atomic>

namespace kelxml
{

namespace
{

std::atomic<std::uint64_t> changes{0};

QDomNode topOf(QDomNode node)
{
    for (QDomNode parent = node.parentNode(); !parent.isNull(); parent = node.parentNode())
        node = parent;
    return node;
}

/// Puts a node without a parent in the place of a fresh child of a fresh element and takes it out again:
/// `replaceChild` overwrites its links without following them, and it comes out belonging to `home`.
void adopt(const QDomNode& top, QDomDocument home)
{
    QDomElement cradle = home.createElement(QStringLiteral("cradle"));
    const QDomElement placeholder = home.createElement(QStringLiteral("placeholder"));
    cradle.appendChild(placeholder);
    cradle.replaceChild(top, placeholder);
    cradle.removeChild(top);
}

/// `appendChild` for a node without a parent. Its links to siblings may be those of an earlier place, whose
/// nodes are freed. Of all that Qt has, only `replaceChild` overwrites both: so the node takes the place of
/// the last child, which then goes before it, or that of a fresh one.
void appendOutsider(const NodeRef& parent, const QDomNode& child)
{
    QDomNode place = parent.node;
    const QDomNode last = place.lastChild();
    if (last.isNull()) {
        QDomDocument home = parent.document.living();
        place.replaceChild(child, place.appendChild(home.createTextNode(QString())));
    } else {
        place.replaceChild(child, last);
        place.insertBefore(last, child);
    }
}

bool standsOnElement(const QDomNode& node)
{
    if (!node.isAttr())
        return false;
    QDomElement element = node.parentNode().toElement();
    return !element.isNull() && element.attributeNode(node.nodeName()) == node;
}

void countDocumentChange() noexcept
{
    changes.fetch_add(1, std::memory_order_relaxed);
}

/// Which tree was settled in which document. Valid as long as nothing was counted since, and then a tree need
/// not be settled again: else each step of a walk through it would, and every list would be made anew at each
/// step. The addresses are compared and never followed.
struct Settled
{
    Settled() = default;
    Settled(const QDomNode& node, const QDomNode& home)
        : top(Handle::identityOf(node)), document(Handle::identityOf(home)), at(documentChanges())
    {}

    bool operator==(const Settled& other) const
    {
        return top == other.top && document == other.document && at == other.at;
    }

    const void* top = nullptr;
    const void* document = nullptr;
    std::uint64_t at = 0;
};

/// Makes both trees fit to be touched, and counts when their documents differ.
void prepareMeeting(const NodeRef& parent, const NodeRef& child)
{
    if (parent.document.living() != child.document.living())
        countDocumentChange();
    if (documentChanges() == 0)
        return;
    settle(parent);
    settle(child);
    if (parent.node.ownerDocument() != child.node.ownerDocument())
        countDocumentChange();
}

} // namespace

QDomNode keeperOf(const QDomNode& node)
{
    QDomNode keeper = node.isAttr() ? node.parentNode() : QDomNode();
    if (!keeper.isElement())
        keeper.clear();
    return keeper;
}

std::uint64_t documentChanges() noexcept
{
    return changes.load(std::memory_order_relaxed);
}

void settle(const NodeRef& place)
{
    if (documentChanges() == 0)
        return;
    const QDomNode top = topOf(place.node);
    if (top.isNull() || top.isDocument())
        return;
    static thread_local Settled last;
    const QDomDocument& home = place.document.living();
    if (last == Settled{top, home})
        return;
    adopt(top, home);
    countDocumentChange();
    last = {top, home};
}

void appendSafely(const NodeRef& parent, const NodeRef& child)
{
    prepareMeeting(parent, child);
    if (parent.node.isNull() || child.node.isNull())
        return;
    if (child.node.isDocument() || standsOnElement(child.node) || !fitsBelow(parent.node, child.node))
        return;
    if (child.node.parentNode().isNull())
        appendOutsider(parent, child.node);
    else
        QDomNode(parent.node).appendChild(child.node);
}

QDomNode removeSafely(const NodeRef& parent, const NodeRef& child)
{
    prepareMeeting(parent, child);
    return QDomNode(parent.node).removeChild(child.node);
}

void clearBeforeSetContent(QDomDocument& document)
{
    for (QDomNode node = document.firstChild(); !node.isNull(); node = document.firstChild())
        document.removeChild(node);
}

} // namespace kelxml
