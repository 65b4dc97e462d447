// Changes of a tree that report why they were refused, and changes that the COM interfaces lack.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// Why a change was refused.
enum class Refusal {
    None, ///< the change was made
    Ring, ///< `child` is or contains `parent`
    TooDeep,
    Attribute, ///< an attribute can only be set
    WholeDocument,
    NotAChild
};

/// Moves `child` to the end of the children of `parent`.
Refusal append(const qt::NodeRef& parent, const qt::NodeRef& child);
/// Moves `child` before `reference`.
Refusal insertBefore(const qt::NodeRef& parent, const qt::NodeRef& child, const qt::NodeRef& reference);
/// Moves `replacement` to the place of `child`, which is removed.
Refusal replace(const qt::NodeRef& parent, const qt::NodeRef& child, const qt::NodeRef& replacement);
Refusal remove(const qt::NodeRef& parent, const qt::NodeRef& child);

/// Removes all children and appends a text, unless the text is empty.
void replaceContent(const qt::NodeRef& element, const QString& text);

/// \return whether the element had the attribute
bool removeAttribute(const qt::NodeRef& element, const QString& name);

/// Null for a node without a parent: if it outlived its parent, its links point to freed nodes.
QDomNode nextSibling(const QDomNode& node);
QDomNode previousSibling(const QDomNode& node);

} // namespace kelxml::trees
