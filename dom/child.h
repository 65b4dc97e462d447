// Whether an object that a caller passes as a child is one of ours.

#pragma once

#include "dom/inside.h"

#include <optional>

namespace kelxml
{

/// The place of one of the library's own four node-like objects; nothing for any other object. It is known
/// by its dispatch table alone: nothing of a foreign object past its first pointer is read, and none of its
/// methods is called.
std::optional<NodeRef> refOfChild(IXMLDOMNode* child);

} // namespace kelxml
