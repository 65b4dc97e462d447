// Limits the depth of trees. Qt destroys, copies and saves a tree by recursion, so a tree of unlimited depth
// would overrun the stack.

#pragma once

#include "trees/refusal.h"

#include <QtXml/QDomNode>

namespace kelxml::trees
{

/// Checks whether `child` can be appended to `parent`. The time grows with the depth of `parent` and with the
/// size of the subtree of `child`.
/// \return `Ring` if `child` is `parent` or contains `parent`; `TooDeep` if the tree would exceed the depth
///         limit; otherwise `None`
/// \throw std::bad_alloc
Refusal refusalBelow(const QDomNode& parent, const QDomNode& child);

/// Whether the subtree of `root`, without attributes, has fewer than `depth` levels. If so, no path from
/// `root` down to a leaf has more than `depth` nodes, because every node on the path is a level, except
/// possibly the leaf.
bool isNoDeeperThan(const QDomNode& root, int depth);

} // namespace kelxml::trees
