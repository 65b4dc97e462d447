// Compares vtables, each class's own being read off an object of it.

#include "dom/child.h"

#include "guards/handle.h"

#include <cstring>

namespace kelxml
{

namespace
{

const void* vtableAt(const void* object)
{
    const void* vtable = nullptr;
    std::memcpy(&vtable, object, sizeof vtable);
    return vtable;
}

template <class Wrapper>
const void* vtableOf()
{
    static const void* const vtable = [] {
        const QDomDocument none;
        const Wrapper specimen({}, DocumentRef{none});
        return vtableAt(&specimen);
    }();
    return vtable;
}

template <>
const void* vtableOf<CMorvXMLDOMDocument>()
{
    static const void* const vtable = [] {
        const CMorvXMLDOMDocument specimen{QDomDocument()};
        return vtableAt(&specimen);
    }();
    return vtable;
}

template <class Wrapper>
NodeRef refAs(IXMLDOMNode* child)
{
    return refTo(*static_cast<const Wrapper*>(child));
}

} // namespace

std::optional<Child> recognise(IXMLDOMNode* child)
{
    const void* const vtable = vtableAt(child);
    if (vtable == vtableOf<CMorvXMLDOMElement>())
        return Child{refAs<CMorvXMLDOMElement>(child), NODE_ELEMENT};
    if (vtable == vtableOf<CMorvXMLDOMNode>()) {
        const NodeRef ref = refAs<CMorvXMLDOMNode>(child);
        return Child{ref, static_cast<DOMNodeType>(ref.node.nodeType())};
    }
    if (vtable == vtableOf<CMorvXMLDOMAttribute>())
        return Child{refAs<CMorvXMLDOMAttribute>(child), NODE_ATTRIBUTE};
    if (vtable == vtableOf<CMorvXMLDOMDocument>())
        return Child{refAs<CMorvXMLDOMDocument>(child), NODE_DOCUMENT};
    return std::nullopt;
}

} // namespace kelxml
