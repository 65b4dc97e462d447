#include "trees/append_remove.h"

#include "lists/live_list.h"
#include "qt/movable_node.h"
#include "trees/depth.h"
#include "trees/owners.h"

namespace kelxml::trees
{

namespace
{

/// Appends `child`, which has no parent. The sibling links of `child` may point to former siblings that were
/// freed. Only Qt's `replaceChild` overwrites both links. So this function replaces the last child of
/// `parent` with `child`, and then inserts the replaced node before `child`. If `parent` has no children,
/// this function first appends a temporary text and then replaces the text with `child`.
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

/// Whether `node` is an attribute that an element currently has.
bool isOnElement(const QDomNode& node)
{
    if (!node.isAttr())
        return false;
    QDomElement element = node.parentNode().toElement();
    return !element.isNull() && element.attributeNode(node.nodeName()) == node;
}

} // namespace

Refusal appendChild(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    if (parent.node.isNull() || child.node.isNull())
        return Refusal::NoNode;
    if (child.node.isDocument())
        return Refusal::WholeDocument;
    ensureValidOwnerDocuments(parent, child);
    if (isOnElement(child.node))
        return Refusal::Attribute;
    if (const Refusal refusal = refusalBelow(parent.node, child.node); refusal != Refusal::None)
        return refusal;
    const qt::MovableNode earlier = child.node.parentNode();
    if (!earlier.isNull())
        lists::invalidate(child.node, earlier);
    lists::invalidate(child.node, parent.node);
    if (earlier.isNull())
        appendDetached(parent, child.node);
    else
        QDomNode(parent.node).appendChild(child.node);
    return Refusal::None;
}

QDomNode removeChild(const qt::NodeRef& parent, const qt::NodeRef& child)
{
    ensureValidOwnerDocuments(parent, child);
    lists::invalidate(child.node, parent.node);
    return QDomNode(parent.node).removeChild(child.node);
}

} // namespace kelxml::trees
