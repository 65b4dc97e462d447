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
        const Wrapper specimen({}, {});
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
Place placeOfWrapper(IXMLDOMNode* child)
{
    return Inside::placeOf(*static_cast<const Wrapper*>(child));
}

} // namespace

std::optional<Place> placeOfChild(IXMLDOMNode* child)
{
    const void* const table = dispatchTableAt(child);
    if (table == dispatchTableOf<CMorvXMLDOMElement>())
        return placeOfWrapper<CMorvXMLDOMElement>(child);
    if (table == dispatchTableOf<CMorvXMLDOMNode>())
        return placeOfWrapper<CMorvXMLDOMNode>(child);
    if (table == dispatchTableOf<CMorvXMLDOMAttribute>())
        return placeOfWrapper<CMorvXMLDOMAttribute>(child);
    if (table == dispatchTableOf<CMorvXMLDOMDocument>())
        return placeOfWrapper<CMorvXMLDOMDocument>(child);
    return std::nullopt;
}

} // namespace kelxml
