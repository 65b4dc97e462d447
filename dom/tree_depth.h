// How deep trees may become. Qt destroys, copies and saves a tree by recursion, so that a tree of any depth
// would sooner or later overrun a stack.

#pragma once

#include "dom/text_bounds.h"

#include <QtXml/QDomNode>

namespace kelxml
{

/// Elements in a row from the top of a tree down. The same number as for the nesting of a text, so that what
/// was built can be saved and loaded again.
constexpr int kMaxElementDepth = bounds::kMaxNesting;

/// Nodes of any kind in a row: below the deepest element there is room for an attribute and its text.
constexpr int kMaxNodeDepth = kMaxElementDepth + 2;

/// Whether `child` can be appended to `parent`: no node would come to stand below itself, and no row would
/// become too long. Takes time in the depth of `parent` and in the size of `child`.
bool fitsBelow(const QDomNode& parent, const QDomNode& child);

/// Nodes in a row from `root` down, itself included.
int depthOf(const QDomNode& root);

} // namespace kelxml
