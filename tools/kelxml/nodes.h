// The object model in the terms of this program: plain strings and plain lists.

#pragma once

#include "host.h"

#include <string>
#include <vector>

namespace host
{

using Node = kel::ComPtr<IXMLDOMNode>;

struct AttributeText
{
    std::wstring name;
    std::wstring value;
};

DOMNodeType typeOf(IXMLDOMNode& node);
std::wstring nameOf(IXMLDOMNode& node);
/// The value of a node that is no element and no attribute.
std::wstring valueOf(IXMLDOMNode& node);

/// By name, for the library's order is by chance.
std::vector<AttributeText> attributesOf(const Library& library, IXMLDOMNode& node);

/// The elements with a tag name as they are now, in document order; the library's own list would follow every
/// change.
std::vector<Node> elementsNamed(IXMLDOMDocument& document, const std::wstring& tagName);

} // namespace host
