// Looking at a document: `tree` and `find`.

#include "commands.h"
#include "files.h"
#include "nodes.h"
#include "terminal.h"
#include "text.h"

#include <array>
#include <iostream>

namespace host
{
namespace
{

const char* typeWord(DOMNodeType type)
{
    static constexpr std::array<const char*, 13> kWords{
        "invalid",     "element", "attribute", "text",    "cdata",    "entity-reference", "entity",
        "instruction", "comment", "document",  "doctype", "fragment", "notation"};
    const auto index = static_cast<std::size_t>(type);
    return index < kWords.size() ? kWords[index] : "unknown";
}

/// Names that say no more than the type ("#text") are left out.
std::string nameAndAttributes(const Library& library, IXMLDOMNode& node)
{
    const std::wstring name = nameOf(node);
    std::string line;
    if (!name.empty() && name[0] != L'#')
        line = ' ' + painted(Style::name, toUtf8(name));
    if (typeOf(node) == NODE_ELEMENT)
        for (const AttributeText& attribute : attributesOf(library, node))
            line += ' ' + painted(Style::attribute, toUtf8(attribute.name)) + '=' + quoted(attribute.value);
    return line;
}

/// Recursion is safe: the library lets no tree deeper than some 2,000 levels come to be.
void printTree(const Library& library, IXMLDOMNode& node, std::size_t level)
{
    const DOMNodeType type = typeOf(node);
    std::cout << std::string(2 * level, ' ') << painted(Style::type, typeWord(type))
              << nameAndAttributes(library, node);
    if (type != NODE_ELEMENT && type != NODE_DOCUMENT) {
        const std::wstring value = valueOf(node);
        if (!value.empty())
            std::cout << ' ' << painted(Style::text, quoted(value));
    }
    std::cout << '\n';
    for (const Node& child : kel::childrenOf(node))
        printTree(library, *child, level + 1);
}

} // namespace

void runTree(const Library& library, const Arguments& arguments)
{
    const auto document = loadDocument(library, arguments.values[0]);
    printTree(library, *document, 0);
}

void runFind(const Library& library, const Arguments& arguments)
{
    const auto document = loadDocument(library, arguments.values[0]);
    for (const Node& match : elementsNamed(*document, arguments.values[1])) {
        std::cout << nameAndAttributes(library, *match).substr(1);
        const std::wstring text = kel::textOf(*match, &IXMLDOMNode::get_text);
        if (!text.empty())
            std::cout << ' ' << painted(Style::text, quoted(text));
        std::cout << '\n';
    }
}

} // namespace host
