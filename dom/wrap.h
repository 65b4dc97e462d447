// Creates the objects that wrap Qt's nodes and collections.

#pragma once

#include "dom/wrapper_access.h"
#include "qt/movable_node.h"

namespace kelxml::dom
{

using qt::MovableNode;

/// Creates an object for a Qt document. The returned pointer owns the only reference to the object.
kel::ComPtr<CMorvXMLDOMDocument> makeOwnerDocument(const QDomDocument& document);

/// Creates an object and stores it in `out` with one reference, which the caller owns. An exception leaves
/// `out` unchanged and leaks nothing.
template <class Wrapper, class Source, class Interface>
void createObject(Source&& source, const DocumentRef& document, Interface** out)
{
    kel::ComPtr<Wrapper> wrapper(new Wrapper(std::forward<Source>(source), document));
    *out = wrapper.detach();
}

/// Creates an object for `node` and stores the object in `out`.
/// \param type selects the class of the object: `NODE_ELEMENT` for an element object, `NODE_ATTRIBUTE` for an
///        attribute object, any other type for a generic node. Must be the type of `node`, unless `node` is
///        null
/// \param node may be null. The object then has no Qt node
void wrapAs(DOMNodeType type, MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

/// Creates an object for `node` and stores the object in `out`. The type of `node` selects the class of the
/// object. If `node` is null, the object is a generic node object without a Qt node.
void wrapForReturn(MovableNode&& node, const DocumentRef& document, IXMLDOMNode** out);

} // namespace kelxml::dom
