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

/// Creates an object for `node` and stores it in `out`: an element, an attribute or, for any other type, a
/// generic node.
/// \param type the type of `node`
/// \param node may be null
void wrapAs(DOMNodeType type, MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

/// Creates an object of the class that belongs to the type of `node`, and stores it in `out`. For a null
/// node, creates a generic object that has no Qt node.
void wrapForReturn(MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

} // namespace kelxml::dom
