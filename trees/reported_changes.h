// Changes a tree, and reports why a change was refused. Also contains operations that the COM interfaces
// lack.

#pragma once

#include "qt/node_ref.h"
#include "trees/refusal.h"

namespace kelxml::trees
{

/// Moves `child` to the end of the children of `parent`.
Refusal append(const qt::NodeRef& parent, const qt::NodeRef& child);
/// Moves `child` to the place before `reference`, which must be a child of `parent`.
Refusal insertBefore(const qt::NodeRef& parent, const qt::NodeRef& child, const qt::NodeRef& reference);
/// Moves `replacement` to the place of `child`, and removes `child` from `parent`.
Refusal replace(const qt::NodeRef& parent, const qt::NodeRef& child, const qt::NodeRef& replacement);
Refusal remove(const qt::NodeRef& parent, const qt::NodeRef& child);

/// Removes all children of `element`. Then, if `text` is not empty, appends a text node with `text`.
void replaceContent(const qt::NodeRef& element, const QString& text);

/// \return whether the element had the attribute
bool removeAttribute(const qt::NodeRef& element, const QString& name);

/// `nextSibling` and `previousSibling` return null for a node without a parent: such a node may have outlived
/// its parent, and the sibling links of the node may then point to freed nodes.
QDomNode nextSibling(const QDomNode& node);
QDomNode previousSibling(const QDomNode& node);

} // namespace kelxml::trees
