// Making and changing documents: `copy`, `set`, `text` and `new`.

#include "commands.h"
#include "files.h"
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
    kel::check(document.createNode(kel::Variant(std::int32_t{NODE_ELEMENT}).get(), kel::Bstr(name).get(),
                                   nullptr, element.put()),
               "making an element");
    if (!element)
        throw Failure("making an element: nothing was made");
    kel::check(parent.appendChild(element.get(), nullptr), "appending an element");
    return element;
}

void setAttribute(const Library& library, IXMLDOMNode& node, const std::wstring& name,
                  const kel::Variant& value)
{
    const auto element = library.asElement(node);
    if (!element)
        throw Failure("setting an attribute: the node is no element");
    kel::check(element->setAttribute(kel::Bstr(name.c_str()).get(), value.get()), "setting an attribute");
}

void putText(IXMLDOMNode& node, const std::wstring& text)
{
    kel::check(node.put_text(kel::Bstr(text.c_str()).get()), "setting a text");
}

/// The library sets what it is given, and a document with such an attribute could not be read again; so its
/// own reader is asked.
bool isName(const Library& library, const std::wstring& text)
{
    const auto document = library.newDocument();
    const std::wstring xml = L'<' + text + L"/>";
    kel::ComPtr<IXMLDOMNode> element;
    return document->loadXML(kel::Bstr(xml.c_str()).get(), nullptr) == S_OK &&
           document->get_firstChild(element.put()) == S_OK && nameOf(*element) == text;
}

std::vector<AttributeText> readAssignments(const Library& library, const Arguments& arguments)
{
    std::vector<AttributeText> assignments;
    for (std::size_t index = 2; index < arguments.values.size(); ++index) {
        const std::wstring& given = arguments.values[index];
        const std::size_t sign = given.find(L'=');
        if (sign == std::wstring::npos || sign == 0)
            throw UsageError("'" + toUtf8(given) + "' is not NAME=VALUE");
        const std::wstring name = given.substr(0, sign);
        if (!isName(library, name))
            throw UsageError("'" + toUtf8(name) + "' is not a name that an attribute can have");
        requireXmlCharacters(given);
        assignments.push_back({name, given.substr(sign + 1)});
    }
    return assignments;
}

void saveChanged(const Library& library, IXMLDOMDocument& document, const std::wstring& path,
                 std::size_t count)
{
    saveDocument(library, document, path);
    reportBeside(path) << count << (count == 1 ? " element changed\n" : " elements changed\n");
}

} // namespace

void runCopy(const Library& library, const Arguments& arguments)
{
    std::uintmax_t bytesIn = 0;
    const auto document = loadDocument(library, arguments.values[0], &bytesIn);
    const std::uintmax_t bytesOut = saveDocument(library, *document, arguments.values[1]);
    reportBeside(arguments.values[1]) << bytesIn << " bytes in, " << bytesOut << " bytes out\n";
}

void runSet(const Library& library, const Arguments& arguments)
{
    const std::vector<AttributeText> assignments = readAssignments(library, arguments);
    const auto document = loadDocument(library, arguments.values[0]);
    const std::vector<Node> matches = elementsNamed(*document, arguments.values[1]);
    for (const Node& match : matches)
        for (const AttributeText& assignment : assignments)
            setAttribute(library, *match, assignment.name, kel::Variant(assignment.value));
    saveChanged(library, *document, *arguments.output, matches.size());
}

void runText(const Library& library, const Arguments& arguments)
{
    requireXmlCharacters(arguments.values[2]);
    const auto document = loadDocument(library, arguments.values[0]);
    const std::vector<Node> matches = elementsNamed(*document, arguments.values[1]);
    for (const Node& match : matches)
        putText(*match, arguments.values[2]);
    saveChanged(library, *document, *arguments.output, matches.size());
}

void runNew(const Library& library, const Arguments& arguments)
{
    const auto document = library.newDocument();
    const Node shelf = appendElement(*document, *document, L"shelf");
    setAttribute(library, *shelf, L"room", kel::Variant(L"reading room"));
    setAttribute(library, *shelf, L"number", kel::Variant(std::int32_t{7}));
    setAttribute(library, *shelf, L"width", kel::Variant(1.25));

    const Node book = appendElement(*document, *shelf, L"book");
    setAttribute(library, *book, L"lent", kel::Variant(L"no"));
    putText(*appendElement(*document, *book, L"title"), L"Trees & <Leaves>");
    putText(*appendElement(*document, *book, L"author"), L"Zo\u00EB \U0001F333");
    saveDocument(library, *document, arguments.values[0]);
}

} // namespace host
