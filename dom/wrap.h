// Creates the objects that wrap Qt's nodes and collections.

#pragma once

#include "dom/wrapper_access.h"
#include "qt/movable_node.h"

namespace kelxml::dom
{

using qt::MovableNode;

/// Creates an object for a Qt document. The returned pointer owns the only reference.
kel::ComPtr<CMorvXMLDOMDocument> makeOwnerDocument(const QDomDocument& document);

/// Creates an object and stores it in `out` with one reference, which the caller owns. Writes `out` last, so
/// an exception leaves `out` unchanged and leaks nothing.
template <class Wrapper, class Source, class Interface>
void createObject(Source&& source, const DocumentRef& document, Interface** out)
{
    kel::ComPtr<Wrapper> wrapper(new Wrapper(std::forward<Source>(source), document));
    *out = wrapper.detach();
}

/// Stores an object for a node in `out`: an element, an attribute or, for any other type, a generic node.
/// \param type the type of the node, which may be null
void wrapAs(DOMNodeType type, MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

/// Stores an object for a node in `out`, by the type of the node. For a null node, stores a generic node
/// without a Qt node.
void wrapForReturn(MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

} // namespace kelxml::dom
