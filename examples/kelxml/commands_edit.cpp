// Making and changing documents: `copy`, `set`, `text` and `new`.

#include "commands.h"
#include "nodes.h"
#include "text.h"

#include <iostream>

namespace host
{
namespace
{

Node appendElement(IXMLDOMDocument& document, IXMLDOMNode& parent, const wchar_t* name)
{
    Node element;
    require(document.createNode(Value(std::int32_t{NODE_ELEMENT}).get(), kel::Bstr(name).get(), nullptr,
                                element.put()),
            "making an element");
    if (!element)
        throw Failure("making an element: nothing was made");
    require(parent.appendChild(element.get(), nullptr), "appending an element");
    return element;
}

void setAttribute(const Library& library, IXMLDOMNode& node, const std::wstring& name, const Value& value)
{
    const auto element = library.asElement(node);
    if (!element)
        throw Failure("setting an attribute: the node is no element");
    require(element->setAttribute(kel::Bstr(name.c_str()).get(), value.get()), "setting an attribute");
}

void putText(IXMLDOMNode& node, const std::wstring& text)
{
    require(node.put_text(kel::Bstr(text.c_str()).get()), "setting a text");
}

std::vector<AttributeText> readAssignments(const Arguments& arguments)
{
    std::vector<AttributeText> assignments;
    for (std::size_t index = 2; index < arguments.values.size(); ++index) {
        const std::wstring& given = arguments.values[index];
        const std::size_t sign = given.find(L'=');
        if (sign == std::wstring::npos || sign == 0)
            throw UsageError("'" + toUtf8(given) + "' is not NAME=VALUE");
        assignments.push_back({given.substr(0, sign), given.substr(sign + 1)});
    }
    return assignments;
}

void printCount(std::size_t count)
{
    std::cout << count << (count == 1 ? " element changed\n" : " elements changed\n");
}

} // namespace

void runCopy(const Library& library, const Arguments& arguments)
{
    const std::wstring& from = arguments.values[0];
    const std::wstring& to = arguments.values[1];
    const auto document = loadDocument(library, from);
    const std::uintmax_t bytesIn = fileSize(from);
    saveDocument(library, *document, to);
    std::cout << bytesIn << " bytes in, " << fileSize(to) << " bytes out\n";
}

void runSet(const Library& library, const Arguments& arguments)
{
    const std::vector<AttributeText> assignments = readAssignments(arguments);
    const auto document = loadDocument(library, arguments.values[0]);
    const std::vector<Node> matches = elementsNamed(*document, arguments.values[1]);
    for (const Node& match : matches)
        for (const AttributeText& assignment : assignments)
            setAttribute(library, *match, assignment.name, Value(assignment.value));
    saveDocument(library, *document, *arguments.output);
    printCount(matches.size());
}

void runText(const Library& library, const Arguments& arguments)
{
    const auto document = loadDocument(library, arguments.values[0]);
    const std::vector<Node> matches = elementsNamed(*document, arguments.values[1]);
    for (const Node& match : matches)
        putText(*match, arguments.values[2]);
    saveDocument(library, *document, *arguments.output);
    printCount(matches.size());
}

void runNew(const Library& library, const Arguments& arguments)
{
    const auto document = library.newDocument();
    const Node shelf = appendElement(*document, *document, L"shelf");
    setAttribute(library, *shelf, L"room", Value(L"reading room"));
    setAttribute(library, *shelf, L"number", Value(std::int32_t{7}));
    setAttribute(library, *shelf, L"width", Value(1.25));

    const Node book = appendElement(*document, *shelf, L"book");
    setAttribute(library, *book, L"lent", Value(L"no"));
    putText(*appendElement(*document, *book, L"title"), L"Trees & <Leaves>");
    putText(*appendElement(*document, *book, L"author"), L"Zo\u00EB \U0001F333");
    saveDocument(library, *document, arguments.values[0]);
}

} // namespace host
