// What stands between the callers and Qt's tree. Qt keeps raw pointers between nodes, lists and documents
// and trusts that they are good; after ordinary calls in an unlucky order they are not. Each rule here keeps
// one kind of bad pointer, or one kind of ring, from Qt.

#pragma once

#include "dom/inside.h"

namespace kelxml
{

/// Against a dangling parent: an attribute points to its element without holding it. Who holds an attribute,
/// or a list of its children, holds the answer as well and lets go of it last. Null for any other node, and
/// for an attribute among the children of another: that one is told when its parent goes, and to hold the
/// parent would let it outlive the element it stands on.
QDomNode keeperOf(const QDomNode& node);

/// Against a dangling document: a tree outside any document remembers one that may be gone once nodes of two
/// documents have met in one call. Gives the top of such a tree a living document, that of `place`, before Qt
/// touches the tree. Until documents have met, this is one comparison.
void settle(const NodeRef& place);

/// Against lists that remember freed nodes: a list goes by its document's count of changes, and once its node
/// has come into another document, that one's count can be the same by chance. This counts what may bring a
/// node into another document; a list made before the last change of it is made anew. 0 until nodes of two
/// documents have met in one call.
std::uint64_t documentChanges() noexcept;

/// `QDomNode::appendChild`, except that what would tie a ring, put a node into two places or nest too deep
/// is left undone.
void appendSafely(const NodeRef& parent, const NodeRef& child);

/// `QDomNode::removeChild`. \return what Qt returns
QDomNode removeSafely(const NodeRef& parent, const NodeRef& child);

/// Against siblings that are freed: `QDomDocument::setContent` lets held top-level nodes keep their links.
/// Takes them out one by one beforehand.
void clearBeforeSetContent(QDomDocument& document);

} // namespace kelxml
