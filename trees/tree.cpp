// Enabled lazily where possible: hosts that never mix documents pay only for the checks in `appendChild`.

#include "trees/tree.h"

#include "lists/live_list.h"
#include "qt/movable_node.h"
#include "trees/depth.h"

#include <atomic>

namespace kelxml::trees
{

namespace
{

/// Set once a call uses nodes of two documents. Until then no node can outlive the document it points to.
std::atomic<bool> haveDocumentsMet{false};

/// The topmost node of the tree that contains `node`.
qt::MovableNode topOf(const QDomNode& node)
{
    qt::MovableNode top{QDomNode(node)};
    for (qt::MovableNode parent = node.parentNode(); !parent.isNull(); parent = top.parentNode())
        top = std::move(parent);
    return top;
}

/// Makes a tree without a parent belong to `home`. Creates an element in `home`, replaces its child with
/// `top` and removes `top` again. `replaceChild` overwrites the links of `top` without following them.
void moveInto(QDomDocument home, const QDomNode& top)
{
    QDomElement temporaryParent = home.createElement(QStringLiteral("parent"));
    const QDomElement placeholder = home.createElement(QStringLiteral("placeholder"));
    temporaryParent.appendChild(placeholder);
    temporaryParent.replaceChild(top, placeholder);
    temporaryParent.removeChild(top);
}

/// `appendChild` for a node without a parent. Its sibling links may still point to freed former siblings.
/// Only Qt's `replaceChild` overwrites both links. So the node replaces the last child, which is then
/// inserted again before it. If there is no child, the node replaces a temporary one.
void appendOutsider(const qt::NodeRef& parent, const QDomNode& child)
{
    QDomNode place = parent.node;
    const QDomNode last = place.lastChild();
    if (last.isNull()) {
        QDomDocument home = parent.document.handleOrFallback();
        place.replaceChild(child, place.appendChild(home.createTextNode(QString())));
    } else {
        place.replaceChild(child, last);
        place.insertBefore(last, child);
    }
}

/// Makes both trees safe for Qt to change.
void ensureValidOwnerDocuments(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    if (!haveDocumentsMet && parent.document.handleOrFallback() != child.document.handleOrFallback())
        haveDocumentsMet = true;
    ensureValidOwnerDocument(parent);
    ensureValidOwnerDocument(child);
}

/// Whether a node is an attribute of an element.
bool isOnElement(const QDomNode& node)
{
    if (!node.isAttr())
        return false;
    QDomElement element = node.parentNode().toElement();
    return !element.isNull() && element.attributeNode(node.nodeName()) == node;
}

} // namespace

void appendChild(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    ensureValidOwnerDocuments(parent, child);
    if (parent.node.isNull() || child.node.isNull())
        return;
    if (child.node.isDocument() || isOnElement(child.node) || !fitsBelow(parent.node, child.node))
        return;
    const qt::MovableNode earlier = child.node.parentNode();
    if (!earlier.isNull())
        lists::invalidate(child.node, earlier);
    lists::invalidate(child.node, parent.node);
    if (earlier.isNull())
        appendOutsider(parent, child.node);
    else
        QDomNode(parent.node).appendChild(child.node);
}

QDomNode removeChild(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    ensureValidOwnerDocuments(parent, child);
    lists::invalidate(child.node, parent.node);
    return QDomNode(parent.node).removeChild(child.node);
}

QDomNode cloneNode(const qt::NodeRef& node, bool deep)
{
    ensureValidOwnerDocument(node);
    return node.node.cloneNode(deep);
}

void setNodeValue(const qt::NodeRef& node, const QString& value)
{
    ensureValidOwnerDocument(node);
    if (node.node.isAttr())
        lists::invalidate(node.node.firstChild(), node.node);
    QDomNode(node.node).setNodeValue(value);
}

void replaceFirstChild(const qt::NodeRef& element, const QString& text)
{
    ensureValidOwnerDocument(element);
    QDomDocument document = element.document.handleOrFallback();
    const QDomNode replacement = document.createTextNode(text);
    const QDomNode first = element.node.firstChild();
    lists::invalidate(first, element.node);
    QDomNode(element.node).removeChild(first);
    QDomNode(element.node).appendChild(replacement);
}

void prepareSettingAttribute(const qt::NodeRef& element, const QString& name)
{
    ensureValidOwnerDocument(element);
    if (!lists::isAnyCached())
        return;
    const QDomNode attribute = element.node.attributes().namedItem(name);
    lists::invalidate(attribute.firstChild(), attribute);
}

QDomDocument ownerDocument(const qt::NodeRef& node)
{
    ensureValidOwnerDocument(node);
    return node.node.ownerDocument();
}

QDomNode ownerElementOf(const QDomNode& node)
{
    QDomNode owner = node.isAttr() ? node.parentNode() : QDomNode();
    if (!owner.isElement())
        owner.clear();
    return owner;
}

void ensureValidOwnerDocument(const qt::NodeRef& node)
{
    if (!haveDocumentsMet)
        return;
    const qt::MovableNode top = topOf(node.node);
    if (!top.isNull() && !top.isDocument())
        moveInto(node.document.handleOrFallback(), top);
}

} // namespace kelxml::trees
