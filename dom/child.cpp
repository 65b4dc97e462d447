// Compares vtables, each class's own being read off an object of it.

#include "dom/child.h"

#include "guards/handle.h"

#include <cstring>
#include <memory>
#include <type_traits>

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
        if constexpr (std::is_same_v<Wrapper, CMorvXMLDOMDocument>)
            return vtableAt(std::make_unique<Wrapper>(none).get());
        else
            return vtableAt(std::make_unique<Wrapper>(Handle(), DocumentRef{none}).get());
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
