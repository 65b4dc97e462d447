// Checks whether an object that a caller passes as a child is one of ours.

#pragma once

#include "dom/wrapper_access.h"

#include <optional>

namespace kelxml::dom
{

struct Child
{
    NodeRef ref;
    DOMNodeType type; ///< the type that `get_nodeType` of the object returns
};

/// Returns the node of an object, if the object is of one of the library's four node-like classes. For any
/// other object, returns nothing, reads only the vtable pointer, and calls none of the methods.
std::optional<Child> recognise(IXMLDOMNode* child);

} // namespace kelxml::dom
