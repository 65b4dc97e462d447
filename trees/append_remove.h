// Appends and removes nodes without dangling pointers, cycles or trees that are too deep. Qt links nodes,
// lists and documents by raw pointers, and calls that are correct on their own leave these pointers dangling
// if they come in an unlucky order.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// `QDomNode::appendChild`. Does nothing if `child` is a document, is or contains `parent`, or is an
/// attribute that is on an element, or if the tree would exceed the depth limit.
void appendChild(const qt::NodeRef& parent, const qt::NodeRef& child);

/// `QDomNode::removeChild`. \return what Qt returns
QDomNode removeChild(const qt::NodeRef& parent, const qt::NodeRef& child);

} // namespace kelxml::trees
