// The guards of the tree. They wait for their cause where they can: a host that keeps its documents apart
// pays for none but the look at an appended node.

#include "trees/tree.h"

#include "lists/live_list.h"
#include "qt/movable_node.h"
#include "trees/depth.h"

#include <atomic>

namespace kelxml::trees
{

namespace
{

/// Set when nodes of two documents first meet in one call. Until then no node can have lost its document.
std::atomic<bool> haveDocumentsMet{false};

/// The topmost node of the tree that a node stands in.
qt::MovableNode topOf(const QDomNode& node)
{
    qt::MovableNode top{QDomNode(node)};
    for (qt::MovableNode parent = node.parentNode(); !parent.isNull(); parent = top.parentNode())
        top = std::move(parent);
    return top;
}

/// Puts a node without a parent in the place of a fresh child of a fresh element and takes it out again:
/// `replaceChild` overwrites its links without following them, and it comes out belonging to `home`.
void moveInto(QDomDocument home, const QDomNode& top)
{
    QDomElement temporaryParent = home.createElement(QStringLiteral("parent"));
    const QDomElement placeholder = home.createElement(QStringLiteral("placeholder"));
    temporaryParent.appendChild(placeholder);
    temporaryParent.replaceChild(top, placeholder);
    temporaryParent.removeChild(top);
}

/// `appendChild` for a node without a parent. Its links to siblings may be those of an earlier place, whose
/// nodes are freed. Of all that Qt has, only `replaceChild` overwrites both: so the node takes the place of
/// the last child, which then goes before it, or that of a fresh one.
void appendOutsider(const qt::NodeRef& parent, const QDomNode& child)
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

/// Makes both trees fit to be touched.
void prepareMeeting(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    if (!haveDocumentsMet && parent.document.living() != child.document.living())
        haveDocumentsMet = true;
    adopt(parent);
    adopt(child);
}

} // namespace

void appendChild(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    prepareMeeting(parent, child);
    if (parent.node.isNull() || child.node.isNull())
        return;
    if (child.node.isDocument() || isOnElement(child.node) || !fitsBelow(parent.node, child.node))
        return;
    const qt::MovableNode earlier = child.node.parentNode();
    if (!earlier.isNull())
        lists::noteChild(child.node, earlier);
    lists::noteChild(child.node, parent.node);
    if (earlier.isNull())
        appendOutsider(parent, child.node);
    else
        QDomNode(parent.node).appendChild(child.node);
}

QDomNode removeChild(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    prepareMeeting(parent, child);
    lists::noteChild(child.node, parent.node);
    return QDomNode(parent.node).removeChild(child.node);
}

QDomNode cloneNode(const qt::NodeRef& node, bool deep)
{
    adopt(node);
    return node.node.cloneNode(deep);
}

void setNodeValue(const qt::NodeRef& node, const QString& value)
{
    adopt(node);
    if (node.node.isAttr())
        lists::noteChild(node.node.firstChild(), node.node);
    QDomNode(node.node).setNodeValue(value);
}

void replaceFirstChild(const qt::NodeRef& element, const QString& text)
{
    adopt(element);
    QDomDocument document = element.document.living();
    const QDomNode replacement = document.createTextNode(text);
    const QDomNode first = element.node.firstChild();
    lists::noteChild(first, element.node);
    QDomNode(element.node).removeChild(first);
    QDomNode(element.node).appendChild(replacement);
}

void prepareSettingAttribute(const qt::NodeRef& element, const QString& name)
{
    adopt(element);
    if (!lists::areNodesKept())
        return;
    const QDomNode attribute = element.node.attributes().namedItem(name);
    lists::noteChild(attribute.firstChild(), attribute);
}

QDomDocument ownerDocument(const qt::NodeRef& node)
{
    adopt(node);
    return node.node.ownerDocument();
}

QDomNode ownerElementOf(const QDomNode& node)
{
    QDomNode owner = node.isAttr() ? node.parentNode() : QDomNode();
    if (!owner.isElement())
        owner.clear();
    return owner;
}

bool isOnElement(const QDomNode& node)
{
    if (!node.isAttr())
        return false;
    QDomElement element = node.parentNode().toElement();
    return !element.isNull() && element.attributeNode(node.nodeName()) == node;
}

void adopt(const qt::NodeRef& node)
{
    if (!haveDocumentsMet)
        return;
    const qt::MovableNode top = topOf(node.node);
    if (!top.isNull() && !top.isDocument())
        moveInto(node.document.living(), top);
}

} // namespace kelxml::trees
