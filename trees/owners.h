// The owner documents and owner elements of nodes. A node refers to its owner document and to its owner
// element by raw pointers, so the document or the element can be destroyed while the node still exists.

#pragma once

#include "qt/node_ref.h"

namespace kelxml::trees
{

/// Returns the document that `QDomNode::ownerDocument` returns. Calls `ensureValidOwnerDocument` first, so
/// that this document is never a destroyed one.
QDomDocument ownerDocument(const qt::NodeRef& node);

/// Returns the element that an attribute belongs to. An attribute points to its element but does not keep the
/// element alive. To prevent a dangling pointer, anyone who holds the attribute, or a list of the attribute's
/// children, must also hold the returned element and release the element last.
///
/// Returns null if `node` is not an attribute. Also returns null for an attribute that is a child of another
/// attribute: nobody needs to hold the outer attribute, because Qt clears the inner attribute's parent
/// pointer when the outer attribute is destroyed. Holding the outer attribute would even do harm: it could
/// then outlive its own element and keep a dangling pointer to this element.
QDomNode ownerElementOf(const QDomNode& node);

/// Call this function before Qt uses the document of `node`. Until the process combines nodes of two
/// documents for the first time, this function only checks a flag. After that, the owner of a tree whose top
/// is not a document may be a destroyed document. So for such a tree, this function makes `node.document` the
/// owner.
void ensureValidOwnerDocument(const qt::NodeRef& node);

/// Call this function before a change that uses both nodes. If the nodes belong to different documents, sets
/// the flag that `ensureValidOwnerDocument` checks. Then calls `ensureValidOwnerDocument` for `parent` and
/// for `child`.
void ensureValidOwnerDocuments(const qt::NodeRef& parent, const qt::NodeRef& child);

} // namespace kelxml::trees
