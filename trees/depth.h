// How deep trees may become. Qt destroys, copies and saves a tree by recursion, so that a tree of any depth
// would sooner or later overrun a stack.

#pragma once

#include <QtXml/QDomNode>

namespace kelxml::trees
{

/// Whether `child` can be appended to `parent`: no node would come to stand below itself, and no path
/// would become too long. Takes time in the depth of `parent` and in the size of `child`. \throw
/// std::bad_alloc
bool fitsBelow(const QDomNode& parent, const QDomNode& child);

/// Whether no more than `depth` nodes stand on any path from `root` down, itself included.
bool isWithin(const QDomNode& root, int depth);

} // namespace kelxml::trees
