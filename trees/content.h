// Changes values, texts and attributes, and copies nodes. With Qt's functions alone, nodes could point to
// destroyed documents, and cached lists could contain removed nodes.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// Calls `QDomNode::cloneNode`. The copy belongs to a document that still exists.
QDomNode cloneNode(const qt::NodeRef& node, bool deep);

/// Calls `QDomNode::setNodeValue`. If `node` is an attribute, Qt also replaces the attribute's text child.
void setNodeValue(const qt::NodeRef& node, const QString& value);

/// Removes the first child of `element`, and appends a text node with `text`. The new node comes last, not in
/// the place of the removed child.
void replaceFirstChild(const qt::NodeRef& element, const QString& text);

/// Does the part of `setAttribute` that is the same for all types of attribute values. Call this function
/// before Qt sets the attribute.
void prepareSettingAttribute(const qt::NodeRef& element, const QString& name);

/// Calls `QDomElement::setAttribute`. \param value may have any type for which Qt has an overload
template <class Value>
void setAttribute(const qt::NodeRef& element, const QString& name, const Value& value)
{
    prepareSettingAttribute(element, name);
    element.node.toElement().setAttribute(name, value);
}

} // namespace kelxml::trees
