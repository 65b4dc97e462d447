// Changes of a tree that say whether they were made, and some that the COM interfaces do not have. All of
// them are built on `trees/tree`.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// Why a change was not made.
enum class Refusal {
    None, ///< it was made
    Ring,
    TooDeep,
    PlacedAttribute, ///< it is on an element
    WholeDocument,
    NotAChild
};

/// Appends `child`, which leaves the place that it has.
Refusal append(const qt::NodeRef& parent, const qt::NodeRef& child);
/// Puts `child`, which leaves the place that it has, before `reference`.
Refusal insertBefore(const qt::NodeRef& parent, const qt::NodeRef& child, const qt::NodeRef& reference);
/// Puts `replacement`, which leaves the place that it has, in the place of `child`.
Refusal replace(const qt::NodeRef& parent, const qt::NodeRef& child, const qt::NodeRef& replacement);
Refusal remove(const qt::NodeRef& parent, const qt::NodeRef& child);

/// Removes all children and appends a text, unless that is empty.
void replaceContent(const qt::NodeRef& element, const QString& text);

/// \return whether there was one
bool removeAttribute(const qt::NodeRef& element, const QString& name);

/// Null for a node without a parent: the links of one that outlived its parent point to nodes that are freed.
QDomNode nextSibling(const QDomNode& node);
QDomNode previousSibling(const QDomNode& node);

} // namespace kelxml::trees
