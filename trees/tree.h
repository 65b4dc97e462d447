// Changes Qt's tree without crashing Qt. Qt connects nodes, lists and documents with raw pointers, and
// ordinary calls in an unlucky order leave these pointers dangling. Each function here prevents one kind of
// dangling pointer or cycle. Every call that changes a tree, or asks for a node's document, goes through
// here.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// `QDomNode::appendChild`. Does nothing if that would create a cycle, put a node in two places or nest too
/// deep.
void appendChild(const qt::NodeRef& parent, const qt::NodeRef& child);

/// `QDomNode::removeChild`. \return what Qt returns
QDomNode removeChild(const qt::NodeRef& parent, const qt::NodeRef& child);

/// `QDomNode::cloneNode`. The copy belongs to a document that still exists.
QDomNode cloneNode(const qt::NodeRef& node, bool deep);

/// `QDomNode::setNodeValue`, which replaces the text of an attribute.
void setNodeValue(const qt::NodeRef& node, const QString& value);

/// Removes the first child and appends a text.
void replaceFirstChild(const qt::NodeRef& element, const QString& text);

/// The part of `setAttribute` that does not depend on the type. Call it first.
void prepareSettingAttribute(const qt::NodeRef& element, const QString& name);

/// `QDomElement::setAttribute`. \param value of any type that it accepts
template <class Value>
void setAttribute(const qt::NodeRef& element, const QString& name, const Value& value)
{
    prepareSettingAttribute(element, name);
    element.node.toElement().setAttribute(name, value);
}

/// `QDomNode::ownerDocument`, but never a destroyed document.
QDomDocument ownerDocument(const qt::NodeRef& node);

/// The element that an attribute belongs to. Prevents a dangling parent: an attribute points to its element
/// without keeping it alive. Anyone holding the attribute, or a list of its children, must also hold the
/// returned element and release it last. Null for any other node, and for an attribute that is a child of
/// another attribute: Qt clears that pointer when the parent is destroyed, and holding the parent would let
/// the parent outlive its own element.
QDomNode ownerElementOf(const QDomNode& node);

/// Makes the tree of `node` belong to `node.document`, before Qt uses a destroyed document. Once a
/// call has used nodes of two documents, a tree outside any document may point to a document that was
/// destroyed. Until then this costs one comparison.
void ensureValidOwnerDocument(const qt::NodeRef& node);

} // namespace kelxml::trees
