// Adds to the checks of `trees/append_remove`: refuses every attribute as a child. Also refuses to remove or
// replace a node, or to insert before a node, that is not a child of the given parent.

#include "trees/reported_changes.h"

#include "qt/movable_node.h"
#include "trees/append_remove.h"
#include "trees/owners.h"

namespace kelxml::trees
{

namespace
{

/// Whether `node` is a child of `parent`. Comparing parents is not enough: an attribute is not a child of an
/// element, but its parent in Qt is the element that has, or once had, the attribute.
bool isChildOf(const QDomNode& parent, const QDomNode& node)
{
    if (node.isNull() || node.parentNode() != parent)
        return false;
    return !node.isAttr() || parent.firstChild() == node || !node.previousSibling().isNull();
}

} // namespace

Refusal append(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    return child.node.isAttr() ? Refusal::Attribute : appendChild(parent, child);
}

Refusal insertBefore(const qt::NodeRef& parent, const qt::NodeRef& child, const qt::NodeRef& reference)
{
    if (!isChildOf(parent.node, reference.node))
        return Refusal::NotAChild;
    if (child.node == reference.node)
        return child.node.isAttr() ? Refusal::Attribute : Refusal::None; // is there already
    const Refusal refusal = append(parent, child);
    if (refusal == Refusal::None)
        QDomNode(parent.node).insertBefore(child.node, reference.node); // safe: both have the same parent
    return refusal;
}

Refusal replace(const qt::NodeRef& parent, const qt::NodeRef& child, const qt::NodeRef& replacement)
{
    const Refusal refusal = insertBefore(parent, replacement, child);
    if (refusal == Refusal::None && child.node != replacement.node)
        removeChild(parent, child);
    return refusal;
}

Refusal remove(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    if (!isChildOf(parent.node, child.node))
        return Refusal::NotAChild;
    removeChild(parent, child);
    return Refusal::None;
}

void replaceContent(const qt::NodeRef& element, const QString& text)
{
    QDomDocument document = element.document.handleOrFallback();
    const QDomNode content = text.isEmpty() ? QDomNode() : document.createTextNode(text);
    for (qt::MovableNode child = element.node.firstChild(); !child.isNull();
         child = element.node.firstChild())
        removeChild(element, {child, element.document});
    if (!content.isNull())
        appendChild(element, {content, element.document});
}

bool removeAttribute(const qt::NodeRef& element, const QString& name)
{
    ensureValidOwnerDocument(element);
    QDomElement target = element.node.toElement();
    const bool hadIt = target.hasAttribute(name);
    target.removeAttribute(name);
    return hadIt;
}

QDomNode nextSibling(const QDomNode& node)
{
    return node.parentNode().isNull() ? QDomNode() : node.nextSibling();
}

QDomNode previousSibling(const QDomNode& node)
{
    return node.parentNode().isNull() ? QDomNode() : node.previousSibling();
}

} // namespace kelxml::trees
