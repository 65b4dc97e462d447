// The owner documents and owner elements of nodes. Nodes refer to both by raw pointers, so either can be
// destroyed while a node still exists.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// `QDomNode::ownerDocument`, but never a destroyed document.
QDomDocument ownerDocument(const qt::NodeRef& node);

/// Returns the element that an attribute belongs to. An attribute points to its element but does not keep it
/// alive. To prevent a dangling pointer, anyone holding the attribute, or a list of its children, must also
/// hold the returned element and release it last.
///
/// Returns null for any other node. Also returns null for an attribute that is a child of another attribute,
/// because Qt itself clears the inner attribute's parent pointer when the outer attribute is destroyed.
/// Holding the outer attribute would even do harm: it could then outlive its own element, to which it points.
QDomNode ownerElementOf(const QDomNode& node);

/// Call this before Qt uses the document of `node`. Once a call has used nodes of two documents, a tree
/// outside any document may point to a destroyed document. In that case, this function makes the tree belong
/// to `node.document`. If no call has used nodes of two documents, it only makes one comparison.
void ensureValidOwnerDocument(const qt::NodeRef& node);

/// Calls `ensureValidOwnerDocument` for both nodes of a change.
void ensureValidOwnerDocuments(const qt::NodeRef& parent, const qt::NodeRef& child);

} // namespace kelxml::trees
