// Limits the depth of trees. Qt destroys, copies and saves a tree by recursion, so a tree of unlimited depth
// would overrun the stack.

#pragma once

#include <QtXml/QDomNode>

namespace kelxml::trees
{

/// Whether `child` can be appended to `parent` without creating a cycle and without exceeding the depth
/// limit. The time grows with the depth of `parent` and the size of `child`. \throw std::bad_alloc
bool fitsBelow(const QDomNode& parent, const QDomNode& child);

/// Whether the tree of `root` has fewer than `depth` levels. Then no path in it has more than `depth` nodes,
/// because a leaf at the end of a path is not a level.
bool isNoDeeperThan(const QDomNode& root, int depth);

} // namespace kelxml::trees
