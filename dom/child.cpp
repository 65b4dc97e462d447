// Compares dispatch tables, each class's own being read off an object of it.

#include "dom/child.h"

#include <cstring>

namespace kelxml
{

namespace
{

const void* dispatchTableAt(const void* object)
{
    const void* table = nullptr;
    std::memcpy(&table, object, sizeof table);
    return table;
}

template <class Wrapper>
const void* dispatchTableOf()
{
    static const void* const table = [] {
        const QDomDocument none;
        const Wrapper specimen({}, DocumentRef{none, none});
        return dispatchTableAt(&specimen);
    }();
    return table;
}

template <>
const void* dispatchTableOf<CMorvXMLDOMDocument>()
{
    static const void* const table = [] {
        const CMorvXMLDOMDocument specimen{QDomDocument()};
        return dispatchTableAt(&specimen);
    }();
    return table;
}

template <class Wrapper>
NodeRef refOfWrapper(IXMLDOMNode* child)
{
    return Inside::refTo(*static_cast<const Wrapper*>(child));
}

} // namespace

std::optional<NodeRef> refOfChild(IXMLDOMNode* child)
{
    const void* const table = dispatchTableAt(child);
    if (table == dispatchTableOf<CMorvXMLDOMElement>())
        return refOfWrapper<CMorvXMLDOMElement>(child);
    if (table == dispatchTableOf<CMorvXMLDOMNode>())
        return refOfWrapper<CMorvXMLDOMNode>(child);
    if (table == dispatchTableOf<CMorvXMLDOMAttribute>())
        return refOfWrapper<CMorvXMLDOMAttribute>(child);
    if (table == dispatchTableOf<CMorvXMLDOMDocument>())
        return refOfWrapper<CMorvXMLDOMDocument>(child);
    return std::nullopt;
}

} // namespace kelxml
