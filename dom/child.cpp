// Recognises the library's own objects by their vtables.

#include "dom/child.h"

#include <cstring>

namespace kelxml::dom
{

// The vtables of the four node classes, declared under their symbol names in the C++ ABI of Linux.
extern const void* const kElementVtable[] asm("_ZTV18CMorvXMLDOMElement");
extern const void* const kNodeVtable[] asm("_ZTV15CMorvXMLDOMNode");
extern const void* const kAttributeVtable[] asm("_ZTV20CMorvXMLDOMAttribute");
extern const void* const kDocumentVtable[] asm("_ZTV19CMorvXMLDOMDocument");

namespace
{

/// Whether `vtable` is the vtable of the class of `object`. An object of a derived class does not match,
/// because the derived class has a vtable of its own.
bool hasVtable(const void* object, const void* const* vtable)
{
    const void* found = nullptr;
    std::memcpy(&found, object, sizeof found);
    // The vtable pointer of an object points to the first function in the vtable. Two other entries precede
    // this function: the offset to the top of the object, and the type information.
    return found == vtable + 2;
}

template <class Wrapper>
NodeRef refAs(IXMLDOMNode* child)
{
    return refTo(*static_cast<const Wrapper*>(child));
}

} // namespace

std::optional<Child> recognise(IXMLDOMNode* child)
{
    if (hasVtable(child, kElementVtable))
        return Child{refAs<CMorvXMLDOMElement>(child), NODE_ELEMENT};
    if (hasVtable(child, kNodeVtable)) {
        const NodeRef ref = refAs<CMorvXMLDOMNode>(child);
        return Child{ref, static_cast<DOMNodeType>(ref.node.nodeType())};
    }
    if (hasVtable(child, kAttributeVtable))
        return Child{refAs<CMorvXMLDOMAttribute>(child), NODE_ATTRIBUTE};
    if (hasVtable(child, kDocumentVtable))
        return Child{refAs<CMorvXMLDOMDocument>(child), NODE_DOCUMENT};
    return std::nullopt;
}

} // namespace kelxml::dom
