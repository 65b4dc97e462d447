// How deep trees may become. Qt destroys, copies and saves a tree by recursion, so that a tree of any depth
// would sooner or later overrun a stack.

#pragma once

#include <QtXml/QDomNode>

namespace kelxml::guards
{

/// Whether `child` can be appended to `parent`: no node would come to stand below itself, and no path
/// would become too long. Takes time in the depth of `parent` and in the size of `child`.
bool fitsBelow(const QDomNode& parent, const QDomNode& child);

/// The nodes on the longest path from `root` down, itself included.
int depthOf(const QDomNode& root);

} // namespace kelxml::guards
