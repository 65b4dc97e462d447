// The guards of the tree. They wait for their cause where they can: a host that keeps its documents apart
// pays for none but the look at an appended node.

#include "guards/tree.h"

#include "guards/depth.h"
#include "guards/handle.h"
#include "guards/live_list.h"

#include <atomic>

namespace kelxml::guards
{

namespace
{

/// Set when nodes of two documents first meet in one call. Until then no node can have lost its document.
std::atomic<bool> haveDocumentsMet{false};

/// The topmost node of the tree that a node stands in.
Handle topOf(const QDomNode& node)
{
    Handle top{QDomNode(node)};
    for (Handle parent = node.parentNode(); !parent.isNull(); parent = top.parentNode())
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

/// Makes both trees fit to be touched.
void prepareMeeting(const NodeRef& parent, const NodeRef& child)
{
    if (!haveDocumentsMet && parent.document.living() != child.document.living())
        haveDocumentsMet = true;
    adopt(parent);
    adopt(child);
}

} // namespace

void appendChild(const NodeRef& parent, const NodeRef& child)
{
    prepareMeeting(parent, child);
    if (parent.node.isNull() || child.node.isNull())
        return;
    if (child.node.isDocument() || isOnElement(child.node) || !fitsBelow(parent.node, child.node))
        return;
    const Handle earlier = child.node.parentNode();
    if (!earlier.isNull())
        noteChild(child.node, earlier);
    noteChild(child.node, parent.node);
    if (earlier.isNull())
        appendOutsider(parent, child.node);
    else
        QDomNode(parent.node).appendChild(child.node);
}

QDomNode removeChild(const NodeRef& parent, const NodeRef& child)
{
    prepareMeeting(parent, child);
    noteChild(child.node, parent.node);
    return QDomNode(parent.node).removeChild(child.node);
}

QDomNode cloneNode(const NodeRef& node, bool deep)
{
    adopt(node);
    return node.node.cloneNode(deep);
}

void setNodeValue(const NodeRef& node, const QString& value)
{
    adopt(node);
    if (node.node.isAttr())
        noteChild(node.node.firstChild(), node.node);
    QDomNode(node.node).setNodeValue(value);
}

void replaceFirstChild(const NodeRef& element, const QString& text)
{
    adopt(element);
    QDomDocument document = element.document.living();
    const QDomNode replacement = document.createTextNode(text);
    const QDomNode first = element.node.firstChild();
    noteChild(first, element.node);
    QDomNode(element.node).removeChild(first);
    QDomNode(element.node).appendChild(replacement);
}

void prepareSettingAttribute(const NodeRef& element, const QString& name)
{
    adopt(element);
    if (!areNodesKept())
        return;
    const QDomNode attribute = element.node.attributes().namedItem(name);
    noteChild(attribute.firstChild(), attribute);
}

QDomDocument ownerDocument(const NodeRef& node)
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

void adopt(const NodeRef& node)
{
    if (!haveDocumentsMet)
        return;
    const Handle top = topOf(node.node);
    if (!top.isNull() && !top.isDocument())
        moveInto(node.document.living(), top);
}

} // namespace kelxml::guards
