// Limits the depth of trees. Qt destroys, copies and saves a tree by recursion, so a tree of unlimited depth
// would overrun the stack.

#pragma once

#include <QtXml/QDomNode>

namespace kelxml::trees
{

/// Whether `child` can be appended to `parent` without creating a cycle and without exceeding the depth
/// limit. The time grows with the depth of `parent` and the size of `child`. \throw std::bad_alloc
bool fitsBelow(const QDomNode& parent, const QDomNode& child);

/// Whether no path from `root` down has more than `depth` nodes, `root` included.
bool isNoDeeperThan(const QDomNode& root, int depth);

} // namespace kelxml::trees
