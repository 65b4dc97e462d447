// Checks whether an object that a caller passes as a child is one of ours.

#pragma once

#include "dom/wrapper_access.h"

#include <optional>

namespace kelxml::dom
{

struct Child
{
    NodeRef ref;
    DOMNodeType type; ///< the type that the object's `get_nodeType` returns
};

/// Returns one of the library's own four node-like objects; nothing for any other object. The check compares
/// vtables only: it reads no more than the first pointer of a foreign object and calls none of its methods.
std::optional<Child> recognise(IXMLDOMNode* child);

} // namespace kelxml::dom
