// The reasons why a change of a tree is refused.

#pragma once

namespace kelxml::trees
{

/// Why a change was refused.
enum class Refusal {
    None,   ///< the change was made
    NoNode, ///< `parent` or `child` is null
    Ring,   ///< the node to insert is `parent` or contains `parent`
    TooDeep,
    Attribute,     ///< the node to insert is an attribute on an element; in the C++ layer, any attribute
    WholeDocument, ///< the node to insert is a document
    NotAChild      ///< the node to remove, to replace or to insert before is not a child of `parent`
};

} // namespace kelxml::trees
