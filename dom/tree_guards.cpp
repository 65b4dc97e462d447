// The guards. They wait for their cause where they can: a host that keeps its documents apart pays for none
// but the look at an appended node.

#include "dom/tree_guards.h"

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
/// nodes are freed; Qt would keep one of them, where `insertAfter` and `replaceChild` overwrite both.
void appendOutsider(const Place& parent, const QDomNode& child)
{
    QDomNode place = parent.node;
    if (const QDomNode last = place.lastChild(); !last.isNull()) {
        place.insertAfter(child, last);
        return;
    }
    QDomDocument home = parent.document;
    const QDomNode placeholder = place.appendChild(home.createTextNode(QString()));
    place.replaceChild(child, placeholder);
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

/// Makes both trees fit to be touched, and counts when their documents differ.
void prepareMeeting(const Place& parent, const Place& child)
{
    if (parent.document != child.document)
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

void settle(const Place& place)
{
    if (documentChanges() == 0)
        return;
    const QDomNode top = topOf(place.node);
    if (top.isNull() || top.isDocument())
        return;
    adopt(top, place.document);
    countDocumentChange();
}

void appendSafely(const Place& parent, const Place& child)
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

QDomNode removeSafely(const Place& parent, const Place& child)
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
