// A change is made by `guards/tree`, and then looked for in the tree. Only children that have their place
// below the same parent are moved by Qt directly.

#include "guards/edit.h"

#include "guards/handle.h"
#include "guards/tree.h"

namespace kelxml::guards
{

namespace
{

/// An attribute's parent is the element that it is on, or was on.
bool isChildOf(const QDomNode& parent, const QDomNode& node)
{
    if (node.isNull() || node.parentNode() != parent)
        return false;
    return !node.isAttr() || parent.firstChild() == node || !node.previousSibling().isNull();
}

bool isWithin(const QDomNode& node, const QDomNode& top)
{
    Handle at{QDomNode(node)};
    while (!at.isNull() && at != top)
        at = at.parentNode();
    return !at.isNull();
}

} // namespace

Refusal append(const NodeRef& parent, const NodeRef& child)
{
    if (child.node.isDocument())
        return Refusal::WholeDocument;
    if (isOnElement(child.node))
        return Refusal::PlacedAttribute;
    if (isWithin(parent.node, child.node))
        return Refusal::Ring;
    appendChild(parent, child);
    return parent.node.lastChild() == child.node ? Refusal::None : Refusal::TooDeep;
}

Refusal insertBefore(const NodeRef& parent, const NodeRef& child, const NodeRef& reference)
{
    if (!isChildOf(parent.node, reference.node))
        return Refusal::NotAChild;
    if (child.node == reference.node)
        return Refusal::None;
    const Refusal refusal = append(parent, child);
    if (refusal == Refusal::None)
        QDomNode(parent.node).insertBefore(child.node, reference.node);
    return refusal;
}

Refusal replace(const NodeRef& parent, const NodeRef& child, const NodeRef& replacement)
{
    const Refusal refusal = insertBefore(parent, replacement, child);
    if (refusal == Refusal::None && child.node != replacement.node)
        removeChild(parent, child);
    return refusal;
}

Refusal remove(const NodeRef& parent, const NodeRef& child)
{
    if (!isChildOf(parent.node, child.node))
        return Refusal::NotAChild;
    removeChild(parent, child);
    return Refusal::None;
}

void replaceContent(const NodeRef& element, const QString& text)
{
    QDomDocument document = element.document.living();
    const QDomNode content = text.isEmpty() ? QDomNode() : document.createTextNode(text);
    for (Handle child = element.node.firstChild(); !child.isNull(); child = element.node.firstChild())
        removeChild(element, {child, element.document});
    if (!content.isNull())
        appendChild(element, {content, element.document});
}

bool removeAttribute(const NodeRef& element, const QString& name)
{
    adopt(element);
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

} // namespace kelxml::guards
