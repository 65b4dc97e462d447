// The protection against pointers to destroyed documents is enabled lazily. Hosts that never use nodes of two
// documents in one call pay only for the checks in `ensureValidOwnerDocument` and
// `ensureValidOwnerDocuments`.

#include "trees/owners.h"

#include "qt/movable_node.h"

#include <atomic>

namespace kelxml::trees
{

namespace
{

/// Set when a call first uses nodes of two different documents. Until then, no node points to a destroyed
/// document.
std::atomic<bool> areDocumentsMixed{false};

/// Returns the topmost node of the tree that contains `node`.
qt::MovableNode topOf(const QDomNode& node)
{
    qt::MovableNode top{QDomNode(node)};
    for (qt::MovableNode parent = node.parentNode(); !parent.isNull(); parent = top.parentNode())
        top = std::move(parent);
    return top;
}

/// Makes `document` the owner document of the tree of `top`. `top` is the topmost node of this tree and has
/// no parent. The sibling links of `top` may dangle. Only Qt's `replaceChild` overwrites these links without
/// following them. So this function lets `document` create a temporary element with a child, replaces the
/// child with `top`, and then removes `top` from the element.
void moveInto(QDomDocument document, const QDomNode& top)
{
    QDomElement temporaryParent = document.createElement(QStringLiteral("parent"));
    const QDomElement placeholder = document.createElement(QStringLiteral("placeholder"));
    temporaryParent.appendChild(placeholder);
    temporaryParent.replaceChild(top, placeholder);
    temporaryParent.removeChild(top);
}

} // namespace

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

void ensureValidOwnerDocuments(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    if (!areDocumentsMixed && parent.document.handleOrFallback() != child.document.handleOrFallback())
        areDocumentsMixed = true;
    ensureValidOwnerDocument(parent);
    ensureValidOwnerDocument(child);
}

} // namespace kelxml::trees
