// Checks whether an object that a caller passes as a child is of one of this library's node classes.

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

/// Returns the node and the type of `child` if `child` is an object of one of the library's four node
/// classes: element, attribute, document or generic node. For an object of any other class, returns nothing,
/// reads only the object's vtable pointer, and calls none of the object's methods.
std::optional<Child> recognise(IXMLDOMNode* child);

} // namespace kelxml::dom
