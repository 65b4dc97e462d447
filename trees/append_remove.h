// Appends and removes nodes without creating dangling pointers, cycles or trees that are too deep. Qt links
// nodes, lists and documents by raw pointers. Even if every call is correct on its own, some sequences of
// calls leave these pointers dangling.

#pragma once

#include "qt/node_ref.h"
#include "trees/refusal.h"

namespace kelxml::trees
{

/// Appends `child` as `QDomNode::appendChild` does, but does nothing in these cases:
/// - `parent` or `child` is null.
/// - `child` is a document, or an attribute that is on an element.
/// - `child` is `parent` or contains `parent`.
/// - The tree would exceed the depth limit.
/// \return `None` if `child` was appended, otherwise the reason
Refusal appendChild(const qt::NodeRef& parent, const qt::NodeRef& child);

/// Removes `child` as `QDomNode::removeChild` does. \return what `QDomNode::removeChild` returns
QDomNode removeChild(const qt::NodeRef& parent, const qt::NodeRef& child);

} // namespace kelxml::trees
