// The only place that turns Qt nodes and collections into objects.

#pragma once

#include "dom/wrapper_access.h"
#include "qt/movable_node.h"

namespace kelxml::dom
{

using qt::MovableNode;

/// Creates a document object for a document handle. The returned pointer owns its one reference.
kel::ComPtr<CMorvXMLDOMDocument> makeOwnerDocument(const QDomDocument& document);

/// Creates an object and returns it with one reference, which the receiver owns. Writes `out` last: an
/// exception leaves it unchanged and leaks nothing.
template <class Wrapper, class Source, class Interface>
void handOut(Source&& source, const DocumentRef& document, Interface** out)
{
    kel::ComPtr<Wrapper> wrapper(new Wrapper(std::forward<Source>(source), document));
    *out = wrapper.detach();
}

/// Wraps a node in the class for `type`: element, attribute or, for all others, generic node. The node must
/// have that type or be null.
void wrapAs(DOMNodeType type, MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

/// Wraps a node by its own type; a null node becomes a generic node without a Qt node.
void wrapForReturn(MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

} // namespace kelxml::dom
