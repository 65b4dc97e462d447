// Subcommands that only read documents: `check`, `tree` and `find`.

#include "commands.h"
#include "files.h"
#include "terminal.h"
#include "text.h"

#include <iostream>

namespace tool
{
namespace
{

/// The names of the kinds of nodes, in the order of `kel::NodeKind`.
constexpr const char* kKindNames[] = {
    "node",        "element", "attribute", "text",    "cdata",    "entity-reference", "entity",
    "instruction", "comment", "document",  "doctype", "fragment", "notation"};

std::string attributesOf(const kel::Element& element)
{
    std::string line;
    for (const kel::Attribute& attribute : element.attributes())
        line +=
            ' ' + painted(Style::attribute, printable(attribute.name())) + '=' + inQuotes(attribute.text());
    return line;
}

void printText(const std::string& text)
{
    if (!text.empty())
        std::cout << ' ' << painted(Style::text, inQuotes(text));
    std::cout << '\n';
}

/// Prints the kind, the name and the content of a node. Leaves out a name such as "#text", because such a
/// name only repeats the kind.
void printNode(const kel::Node& node, std::size_t level)
{
    std::cout << std::string(2 * level, ' ')
              << painted(Style::type, kKindNames[static_cast<int>(node.kind())]);
    const std::string name = node.name();
    if (!name.empty() && name[0] != '#')
        std::cout << ' ' << painted(Style::name, printable(name));
    if (const kel::Element element{node})
        std::cout << attributesOf(element) << '\n';
    else if (node.kind() == kel::NodeKind::document)
        std::cout << '\n';
    else
        printText(node.text());
}

/// Prints a tree by recursion. The recursion cannot exhaust the stack, because the library limits the depth
/// of trees to about 2,000 levels.
template <class Parent>
void printTree(const Parent& parent, std::size_t level)
{
    printNode(parent, level);
    for (const kel::Node& child : parent.nodes())
        if (const kel::Element element{child})
            printTree(element, level + 1);
        else
            printNode(child, level + 1);
}

bool printMatches(const kel::Document& document, const std::string& tag, const std::string& prefix)
{
    bool isFound = false;
    for (const kel::Element& match : document.descendants(tag)) {
        isFound = true;
        std::cout << prefix << painted(Style::name, printable(match.name())) << attributesOf(match);
        printText(match.text());
    }
    return isFound;
}

/// Calls `work` for every file that can be loaded. Prints an error for every file that cannot be loaded.
/// \return true if all files could be loaded and `work` returned true for every file
template <class Work>
bool forEachFile(const std::vector<std::string>& files, Work work)
{
    bool areGood = true;
    for (const std::string& file : files)
        try {
            areGood = work(load(file), file) && areGood;
        } catch (const kel::LoadError& error) {
            printError(error);
            areGood = false;
        }
    return areGood;
}

} // namespace

bool runCheck(const Arguments& arguments)
{
    bool areGood = true;
    for (const std::string& file : arguments.values)
        try {
            load(file);
        } catch (const kel::LoadError& error) {
            std::cout << printable(error.what()) << '\n';
            areGood = false;
        }
    return areGood;
}

bool runTree(const Arguments& arguments)
{
    return forEachFile(arguments.values, [&](const kel::Document& document, const std::string& file) {
        if (arguments.values.size() > 1)
            std::cout << printable(file) << ":\n";
        printTree(document, 0);
        return true;
    });
}

bool runFind(const Arguments& arguments)
{
    std::vector<std::string> files = arguments.values;
    const std::string tag = files.back();
    files.pop_back();
    requireName(tag);
    bool isFound = false;
    const bool areGood = forEachFile(files, [&](const kel::Document& document, const std::string& file) {
        isFound =
            printMatches(document, tag, files.size() > 1 ? printable(file) + ": " : std::string()) || isFound;
        return true;
    });
    return areGood && isFound;
}

} // namespace tool
