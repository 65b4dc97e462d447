// Guards against destroyed documents are enabled lazily. Hosts that never mix nodes of two documents pay only
// for the checks in `appendChild`.

#include "trees/safe_changes.h"

#include "lists/live_list.h"
#include "qt/movable_node.h"
#include "trees/depth.h"

#include <atomic>

namespace kelxml::trees
{

namespace
{

/// Set when a call first uses nodes of two documents. Until then, no node points to a destroyed document.
std::atomic<bool> areDocumentsMixed{false};

/// The topmost node of the tree that contains `node`.
qt::MovableNode topOf(const QDomNode& node)
{
    qt::MovableNode top{QDomNode(node)};
    for (qt::MovableNode parent = node.parentNode(); !parent.isNull(); parent = top.parentNode())
        top = std::move(parent);
    return top;
}

/// Makes `document` the document of a tree whose topmost node `top` has no parent. The sibling links of `top`
/// may dangle, and only Qt's `replaceChild` overwrites them without following them. So this function creates
/// an element with a child in `document`, replaces the child with `top`, and then removes `top` from the
/// element.
void moveInto(QDomDocument document, const QDomNode& top)
{
    QDomElement temporaryParent = document.createElement(QStringLiteral("parent"));
    const QDomElement placeholder = document.createElement(QStringLiteral("placeholder"));
    temporaryParent.appendChild(placeholder);
    temporaryParent.replaceChild(top, placeholder);
    temporaryParent.removeChild(top);
}

/// Appends a node that has no parent. Its sibling links may point to former siblings that were freed. Only
/// Qt's `replaceChild` overwrites both links. So `child` replaces the last child, which is then inserted
/// again before `child`. If `parent` has no children, `child` replaces a temporary text.
void appendDetached(const qt::NodeRef& parent, const QDomNode& child)
{
    QDomNode target = parent.node;
    const QDomNode last = target.lastChild();
    if (last.isNull()) {
        QDomDocument document = parent.document.handleOrFallback();
        target.replaceChild(child, target.appendChild(document.createTextNode(QString())));
    } else {
        target.replaceChild(child, last);
        target.insertBefore(last, child);
    }
}

/// Makes the trees of `parent` and `child` safe for Qt to change.
void ensureValidOwnerDocuments(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    if (!areDocumentsMixed && parent.document.handleOrFallback() != child.document.handleOrFallback())
        areDocumentsMixed = true;
    ensureValidOwnerDocument(parent);
    ensureValidOwnerDocument(child);
}

/// Whether `node` is an attribute that an element currently has.
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
        appendDetached(parent, child.node);
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
    if (!areDocumentsMixed)
        return;
    const qt::MovableNode top = topOf(node.node);
    if (!top.isNull() && !top.isDocument())
        moveInto(node.document.handleOrFallback(), top);
}

} // namespace kelxml::trees
