// What stands between the callers and Qt's tree. Qt keeps raw pointers between nodes, lists and documents and
// trusts that they are good; after ordinary calls in an unlucky order they are not. Each rule here keeps one
// kind of bad pointer, or one kind of ring, from Qt. Whatever changes a tree, or asks where a node belongs,
// goes through here.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// `QDomNode::appendChild`, except that what would tie a ring, put a node into two places or nest too deep is
/// left undone.
void appendChild(const qt::NodeRef& parent, const qt::NodeRef& child);

/// `QDomNode::removeChild`. \return what Qt returns
QDomNode removeChild(const qt::NodeRef& parent, const qt::NodeRef& child);

/// `QDomNode::cloneNode`. The copy belongs to a document that is alive.
QDomNode cloneNode(const qt::NodeRef& node, bool deep);

/// `QDomNode::setNodeValue`, which replaces the text of an attribute.
void setNodeValue(const qt::NodeRef& node, const QString& value);

/// Puts a text in the place of the first child, at the end.
void replaceFirstChild(const qt::NodeRef& element, const QString& text);

/// What `setAttribute` does first.
void prepareSettingAttribute(const qt::NodeRef& element, const QString& name);

/// `QDomElement::setAttribute`. \param value of one of the types that it takes
template <class Value>
void setAttribute(const qt::NodeRef& element, const QString& name, const Value& value)
{
    prepareSettingAttribute(element, name);
    element.node.toElement().setAttribute(name, value);
}

/// `QDomNode::ownerDocument`, never one that is gone.
QDomDocument ownerDocument(const qt::NodeRef& node);

/// Against a dangling parent: an attribute points to its element without holding it. Who holds an attribute,
/// or a list of its children, holds the answer as well and lets go of it last. Null for any other node, and
/// for an attribute that is a child of another attribute: Qt clears its pointer when that parent goes, and to
/// hold the parent would let it outlive the element it stands on.
QDomNode ownerElementOf(const QDomNode& node);

/// Whether a node is an attribute in its place. Its element is held by whoever holds the attribute.
bool isOnElement(const QDomNode& node);

/// Against a dangling document: once nodes of two documents have met in one call, a tree outside any document
/// may remember one that is gone. Gives the top of such a tree a living document, that of `node`, before Qt
/// touches the tree. Until documents have met, this is one comparison.
void adopt(const qt::NodeRef& node);

} // namespace kelxml::trees
