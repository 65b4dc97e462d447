// The one rule by which a Qt node or collection becomes a new object.

#pragma once

#include "dom/wrapper_access.h"
#include "qt/movable_node.h"

namespace kelxml::dom
{

using qt::MovableNode;

/// A new document object over a document handle, with the one reference that the pointer holds.
kel::ComPtr<CMorvXMLDOMDocument> makeOwnerDocument(const QDomDocument& document);

/// Makes a new object and hands it out with one reference, the receiver's. `out` is written last, so that an
/// exception leaves it as it was and nothing behind.
template <class Wrapper, class Source, class Interface>
void handOut(Source&& source, const DocumentRef& document, Interface** out)
{
    kel::ComPtr<Wrapper> wrapper(new Wrapper(std::forward<Source>(source), document));
    *out = wrapper.detach();
}

/// Wraps a node as the class that goes with `type`: element, attribute or, for all others, generic node. The
/// node is of that type, or null.
void wrapAs(DOMNodeType type, MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

/// Wraps a node as what it is; a null node becomes a generic node that holds none.
void wrapForReturn(MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

} // namespace kelxml::dom
