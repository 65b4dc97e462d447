// Whether an object that a caller passes as a child is one of ours.

#pragma once

#include "dom/wrapper_access.h"

#include <optional>

namespace kelxml::dom
{

struct Child
{
    NodeRef ref;
    DOMNodeType type; ///< what the object's `get_nodeType` reports
};

/// One of the library's own four node-like objects; nothing for any other object. It is known by its vtable
/// alone: nothing of a foreign object past its first pointer is read, and none of its methods is called.
std::optional<Child> recognise(IXMLDOMNode* child);

} // namespace kelxml::dom
