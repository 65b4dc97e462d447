// Changes values, texts and attributes, and copies nodes. Qt would leave pointers to destroyed documents and
// to removed nodes in lists.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

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

} // namespace kelxml::trees
