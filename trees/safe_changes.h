// Changes Qt's trees without crashing Qt. Qt links nodes, lists and documents by raw pointers. Calls that are
// correct on their own leave these pointers dangling if they come in an unlucky order. Each function here
// prevents one kind of dangling pointer or cycle. The rest of the library must use these functions to change
// a tree, to copy a node or to get a node's document.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// `QDomNode::appendChild`. Does nothing if `child` is a document, contains `parent`, or is an attribute
/// of an element, or if the tree would exceed the depth limit.
void appendChild(const qt::NodeRef& parent, const qt::NodeRef& child);

/// `QDomNode::removeChild`. \return what Qt returns
QDomNode removeChild(const qt::NodeRef& parent, const qt::NodeRef& child);

/// `QDomNode::cloneNode`. The copy belongs to a document that still exists.
QDomNode cloneNode(const qt::NodeRef& node, bool deep);

/// `QDomNode::setNodeValue`. For an attribute, it replaces the text child.
void setNodeValue(const qt::NodeRef& node, const QString& value);

/// Removes the first child of `element` and appends a text node.
void replaceFirstChild(const qt::NodeRef& element, const QString& text);

/// The part of `setAttribute` that is the same for all types of values. Call it before Qt sets the attribute.
void prepareSettingAttribute(const qt::NodeRef& element, const QString& name);

/// `QDomElement::setAttribute`. \param value of any type for which Qt has an overload
template <class Value>
void setAttribute(const qt::NodeRef& element, const QString& name, const Value& value)
{
    prepareSettingAttribute(element, name);
    element.node.toElement().setAttribute(name, value);
}

/// `QDomNode::ownerDocument`, but never a destroyed document.
QDomDocument ownerDocument(const qt::NodeRef& node);

/// Returns the element that an attribute belongs to. An attribute points to its element but does not keep it
/// alive. To prevent a dangling pointer, anyone holding the attribute, or a list of its children, must also
/// hold the returned element and release it last.
///
/// Returns null for any other node. Also returns null for an attribute that is a child of another attribute,
/// because Qt itself clears the inner attribute's parent pointer when the outer attribute is destroyed.
/// Holding the outer attribute would even do harm: it could then outlive its own element, to which it points.
QDomNode ownerElementOf(const QDomNode& node);

/// Call this before Qt uses the document of `node`. Once a call has used nodes of two documents, a tree
/// outside any document may point to a destroyed document. In that case, this function makes the tree belong
/// to `node.document`. If no call has used nodes of two documents, it only makes one comparison.
void ensureValidOwnerDocument(const qt::NodeRef& node);

} // namespace kelxml::trees
